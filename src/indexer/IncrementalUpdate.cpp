#include "indexer/IncrementalUpdate.h"

#include <map>
#include <string_view>
#include <utility>

namespace zelnor {

IncrementalUpdate IncrementalUpdate::plan(const std::vector<FSEventItem>& events) {
  // In path order, which is also the order in which the index stores them best.
  std::map<std::string_view, const FSEventItem*> lastOfPath;
  for (const auto& event : events) lastOfPath[event.path] = &event;

  IncrementalUpdate update;
  for (const auto& [path, event] : lastOfPath) {
    std::optional<FileRecord> record;
    if (event->type != FSEventItem::EventType::removed) record = FileRecord::fromPath(event->path);
    if (record) {
      update.upserts.push_back(std::move(*record));
    } else {
      update.removals.emplace_back(path);
    }
  }
  return update;
}

}  // namespace zelnor
