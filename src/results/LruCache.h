#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <unordered_map>
#include <utility>

namespace zelnor {

/// Values by key, up to a limit of what they cost together; those not asked for the longest go.
template <class T>
class LruCache {
 public:
  explicit LruCache(std::size_t limit) : limit_(limit) {}

  /// Valid until the next insertion; null if there is none.
  [[nodiscard]] const T* find(const std::string& key) {
    const auto found = byKey_.find(key);
    if (found == byKey_.end()) return nullptr;
    entries_.splice(entries_.begin(), entries_, found->second);
    return &found->second->value;
  }
  /// A value that alone costs more than the limit is not kept.
  void insert(const std::string& key, T value, std::size_t cost) {
    if (const auto old = byKey_.find(key); old != byKey_.end()) remove(old->second);
    entries_.push_front({.key = key, .value = std::move(value), .cost = cost});
    byKey_.emplace(key, entries_.begin());
    cost_ += cost;
    while (cost_ > limit_) remove(std::prev(entries_.end()));
  }

 private:
  struct Entry {
    std::string key;
    T value;
    std::size_t cost = 0;
  };
  using Entries = std::list<Entry>;

  void remove(typename Entries::iterator entry) {
    cost_ -= entry->cost;
    byKey_.erase(entry->key);
    entries_.erase(entry);
  }

  const std::size_t limit_;
  std::size_t cost_ = 0;
  Entries entries_;  ///< the one asked for last is the first
  std::unordered_map<std::string, typename Entries::iterator> byKey_;
};

}  // namespace zelnor
