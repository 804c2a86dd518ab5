#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zelnor::platform {

/// Of the names of folders that count as one thing.
inline constexpr std::string_view kPackageSuffix = ".app";

/// What an entry is, as far as the scope asks.
enum class EntryKind : std::uint8_t { file, folder, link, unknown };

/// Which entries below a root belong to the index. Pure: it looks at paths, never at the disk.
struct ScopeFilter {
  std::vector<std::string> excludedPrefixes;  ///< of whole paths, as plain text
  bool skipsHidden = false;           ///< names that begin with a dot, and all below such folders
  bool skipsPackageContents = false;  ///< what is below folders whose name ends in `kPackageSuffix`
  bool skipsLinks = false;

  /// Whether the entry at `path` is indexed when `root` is. Both are absolute, without a slash at
  /// the end ("/" itself is the empty text); the root itself is not an entry, and may be hidden or
  /// a package. A link of unknown kind counts as included.
  [[nodiscard]] bool includes(std::string_view root, std::string_view path, EntryKind kind) const;

  /// Whether entries below the folder at `path`, which is the root or an included folder, can be
  /// included.
  [[nodiscard]] bool enters(std::string_view root, std::string_view path) const;

 private:
  [[nodiscard]] bool isExcluded(std::string_view path) const;
};

/// Whether `path` is below `folder`. Both absolute, without a slash at the end.
bool isBelow(std::string_view folder, std::string_view path);
/// Whether `path` is `folder` or below it.
bool isAtOrBelow(std::string_view folder, std::string_view path);
/// The folder that `path` is in; empty for an entry of "/".
std::string_view parentOf(std::string_view path);
/// `path` without slashes at its end.
std::string withoutTrailingSlashes(std::string path);

}  // namespace zelnor::platform
