#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/ScopeFilter.h"

namespace zelnor::platform {

/// Which paths a stream is about: those that the filter includes below a root, less the program's
/// own files. Pure and immutable.
class StreamScope {
 public:
  StreamScope(std::vector<std::string> roots, ScopeFilter filter,
              std::vector<std::string> ownPaths);

  [[nodiscard]] bool includes(std::string_view path, EntryKind kind) const;
  /// Whether the folder at `path`, a root or included, can hold entries that are included.
  [[nodiscard]] bool enters(std::string_view path) const;
  /// Whether the program itself writes this entry.
  [[nodiscard]] bool isOwn(std::string_view path) const;
  [[nodiscard]] bool isRoot(std::string_view path) const;

  /// Without slashes at the end, each once. Roots that are excluded as a whole are left out.
  [[nodiscard]] const std::vector<std::string>& roots() const { return roots_; }
  [[nodiscard]] const ScopeFilter& filter() const { return filter_; }

 private:
  std::vector<std::string> roots_;
  ScopeFilter filter_;
  std::vector<std::string> ownPaths_;
};

}  // namespace zelnor::platform
