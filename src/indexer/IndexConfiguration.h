#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DefaultsStore.h"

namespace zelnor {

/// What to index. Paths are absolute, in bytes.
struct IndexConfiguration {
  // GCC wants the braces where a designated initializer leaves the member out.
  // NOLINTNEXTLINE(readability-redundant-member-init)
  std::vector<std::string> includedPaths{};  ///< roots to scan and to watch, in order
  /// Prefixes of paths that are never indexed.
  std::vector<std::string> excludedPaths = {
      "/System", "/private/var", "/private/tmp",
      "/dev",    "/cores",       "/Volumes/.com.apple.TimeMachine.localsnapshots"};
  bool skipHiddenFiles =
      false;  ///< leave out names that begin with a dot, and what is below such folders
  bool skipPackageContents =
      true;  ///< leave out what is below folders that are presented as one file
  bool skipSymlinks = false;

  /// The home folder as the only root, and the default exclusions.
  static IndexConfiguration defaults(std::string homeFolder);

  /// What was saved in `store`; nothing if there is nothing or if it is not a complete
  /// configuration.
  static std::optional<IndexConfiguration> saved(const platform::DefaultsStore& store);
  /// What was saved in `store`; the defaults if there is nothing or if it is not a complete
  /// configuration.
  static IndexConfiguration load(const platform::DefaultsStore& store, std::string homeFolder);
  /// Replaces what was saved.
  void save(platform::DefaultsStore& store) const;

  /// Whether an excluded path is a prefix of `path`, as plain text: "/dev" also excludes
  /// "/devices".
  [[nodiscard]] bool shouldExclude(std::string_view path) const;

  friend bool operator==(const IndexConfiguration&, const IndexConfiguration&) = default;
};

}  // namespace zelnor
