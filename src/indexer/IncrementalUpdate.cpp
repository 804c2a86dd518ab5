#include "indexer/IncrementalUpdate.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

namespace zelnor {

FileChanges planIncrementalUpdate(const std::vector<FSEventItem>& events) {
  // In path order, so that the disk is looked at folder by folder.
  std::map<std::string_view, const FSEventItem*> lastOfPath;
  for (const auto& event : events) lastOfPath[event.path] = &event;

  FileChanges changes;
  for (const auto& [path, event] : lastOfPath) {
    std::optional<FileRecord> record;
    if (event->type != FSEventItem::EventType::removed) record = FileRecord::fromPath(event->path);
    if (record) {
      changes.upserts.push_back(std::move(*record));
    } else {
      changes.removals.emplace_back(path);
    }
  }
  // The index on lower(name) is the largest of those that are kept in step: new rows come in its
  // order.
  std::ranges::sort(changes.upserts, {}, &FileRecord::name);
  return changes;
}

}  // namespace zelnor
