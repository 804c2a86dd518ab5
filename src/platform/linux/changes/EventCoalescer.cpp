#include "platform/linux/changes/EventCoalescer.h"

#include <algorithm>
#include <utility>

namespace zelnor::platform {

void EventCoalescer::add(std::string path, std::uint32_t flags) {
  const auto [entry, isNew] = flags_.try_emplace(std::move(path), 0);
  entry->second |= flags;
  if (isNew) order_.push_back(&entry->first);
}

std::vector<PendingChange> EventCoalescer::take(std::size_t limit) {
  std::vector<PendingChange> taken;
  taken.reserve(std::min(limit, order_.size()));
  while (!order_.empty() && taken.size() < limit) {
    auto entry = flags_.extract(*order_.front());
    order_.pop_front();
    taken.push_back({.path = std::move(entry.key()), .flags = entry.mapped()});
  }
  return taken;
}

}  // namespace zelnor::platform
