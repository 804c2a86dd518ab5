#include "platform/linux/changes/StreamScope.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zelnor::platform {

namespace {

/// What SQLite keeps beside a database, https://www.sqlite.org/tempfiles.html.
constexpr std::array<std::string_view, 3> kCompanions{"-wal", "-shm", "-journal"};

bool isCompanion(std::string_view file, std::string_view path) {
  return path.starts_with(file) &&
         std::ranges::find(kCompanions, path.substr(file.size())) != kCompanions.end();
}

}  // namespace

StreamScope::StreamScope(std::vector<std::string> roots, ScopeFilter filter,
                         std::vector<std::string> ownPaths)
    : filter_(std::move(filter)) {
  for (auto& root : roots) {
    const bool isExcluded = std::ranges::any_of(
        filter_.excludedPrefixes, [&root](const auto& prefix) { return root.starts_with(prefix); });
    root = withoutTrailingSlashes(std::move(root));
    if (!isExcluded && !isRoot(root)) roots_.push_back(std::move(root));
  }
  for (auto& path : ownPaths) ownPaths_.push_back(withoutTrailingSlashes(std::move(path)));
}

bool StreamScope::includes(std::string_view path, EntryKind kind) const {
  return !isOwn(path) && std::ranges::any_of(roots_, [&](const std::string& root) {
    return filter_.includes(root, path, kind);
  });
}

bool StreamScope::enters(std::string_view path) const {
  return !isOwn(path) && std::ranges::any_of(roots_, [&](const std::string& root) {
    return (path == root || filter_.includes(root, path, EntryKind::folder)) &&
           filter_.enters(root, path);
  });
}

bool StreamScope::isOwn(std::string_view path) const {
  return std::ranges::any_of(ownPaths_, [path](const std::string& own) {
    return isAtOrBelow(own, path) || isCompanion(own, path);
  });
}

bool StreamScope::isRoot(std::string_view path) const {
  return std::ranges::find(roots_, path) != roots_.end();
}

}  // namespace zelnor::platform
