#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "bench/Random.h"
#include "bench/TreeNames.h"

namespace zelnor::bench {

/// One entry of a tree to be made.
struct PlannedEntry {
  enum class Kind : std::uint8_t { file, folder, link };

  Kind kind = Kind::file;
  std::size_t depth = 0;         ///< folders between the tree's root and the entry
  std::string name;              ///< unique in its folder
  std::string target;            ///< of a link; relative, may dangle
  std::int64_t size = 0;         ///< bytes; of a file
  std::int64_t mtime = 0;        ///< seconds since 1970
  std::int64_t nanoseconds = 0;  ///< on top of `mtime`
};

/// The entries of a tree like a lived-in home folder: same count and seed, same tree. A folder
/// comes before its contents, and its contents follow it directly, so that whoever makes the tree
/// holds no more than one folder per level.
///
/// About nine folders among a hundred entries; folders of a dozen entries, a few of thousands; most
/// entries four to eight levels deep; sizes with a heavy tail; times over fifteen years, recent
/// ones more often.
class TreePlan {
 public:
  TreePlan(std::uint64_t entries, std::uint64_t seed);

  /// The next entry, or nothing after the last.
  std::optional<PlannedEntry> next();

 private:
  /// A folder whose contents are being planned.
  struct Folder {
    Theme theme = Theme::documents;
    std::uint64_t files = 0;                    ///< still to come, links among them
    std::vector<std::uint64_t> folderContents;  ///< entries below each subfolder still to come
    std::unordered_set<std::string> names;
  };

  Folder planFolder(Theme theme, std::uint64_t entries);
  std::vector<std::uint64_t> split(std::uint64_t entries, std::uint64_t folders);
  PlannedEntry nextFile(Folder& folder);
  PlannedEntry nextFolder();
  std::string uniqueName(Folder& folder, std::string name);
  void setTimes(PlannedEntry& entry);
  Theme themeBelow(Theme parent);

  Random random_;
  std::vector<Folder> open_;  ///< from the root to where the plan is
};

}  // namespace zelnor::bench
