#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/changes/EntryState.h"

namespace zelnor::platform {

/// The folders that nothing follows live, with the time at which each last changed. Thread-safe.
class SweptFolders {
 public:
  /// Adds the folder at `path` as it is in `state`, before it is listed.
  void add(const std::string& path, const EntryState& state);
  /// Adds a folder of which nobody knows what happened in it lately.
  void addUnknown(const std::string& path);
  void remove(const std::string& path);
  /// Removes what is at `path` and below it.
  void removeTree(const std::string& path);
  [[nodiscard]] std::size_t size() const;

  /// Looks at every folder; calls `changed` for each one whose entries may have changed since it
  /// was added. Stops early when `isStopped`.
  void sweep(const std::function<void(const std::string&)>& changed,
             const std::function<bool()>& isStopped) const;
  /// Calls `visit` for every folder.
  void forEach(const std::function<void(const std::string&)>& visit,
               const std::function<bool()>& isStopped) const;

 private:
  using Stamped = std::pair<std::string, std::int64_t>;
  [[nodiscard]] std::vector<Stamped> after(const std::optional<std::string>& path) const;

  mutable std::mutex mutex_;
  std::map<std::string, std::int64_t> stamps_;
};

}  // namespace zelnor::platform
