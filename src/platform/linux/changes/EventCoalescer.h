#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

namespace zelnor::platform {

/// A path of which something changed, with what is known about how.
struct PendingChange {
  std::string path;
  std::uint32_t flags = 0;
};

/// Collects changes until they are taken: one per path, in the order in which the paths first
/// changed. Not thread-safe.
class EventCoalescer {
 public:
  /// Flags of one path add up.
  void add(std::string path, std::uint32_t flags);
  /// Takes the oldest changes, at most `limit`.
  std::vector<PendingChange> take(std::size_t limit);

  [[nodiscard]] std::size_t size() const { return order_.size(); }
  [[nodiscard]] bool empty() const { return order_.empty(); }

 private:
  using Flags = std::unordered_map<std::string, std::uint32_t>;

  Flags flags_;
  std::deque<const std::string*> order_;  ///< the keys of `flags_`, whose nodes do not move
};

}  // namespace zelnor::platform
