#include "platform/ScopeFilter.h"

#include <algorithm>

namespace zelnor::platform {

namespace {

/// Takes the first component off `rest`, with the slash after it.
std::string_view takeComponent(std::string_view& rest) {
  const auto component = rest.substr(0, rest.find('/'));
  rest.remove_prefix(std::min(component.size() + 1, rest.size()));
  return component;
}

}  // namespace

bool ScopeFilter::isExcluded(std::string_view path) const {
  return std::ranges::any_of(
      excludedPrefixes, [path](const std::string& prefix) { return path.starts_with(prefix); });
}

bool ScopeFilter::includes(std::string_view root, std::string_view path, EntryKind kind) const {
  if (!isBelow(root, path) || isExcluded(path)) return false;
  if (skipsLinks && kind == EntryKind::link) return false;
  auto rest = path.substr(root.size() + 1);
  while (!rest.empty()) {
    const auto component = takeComponent(rest);
    if (skipsHidden && component.starts_with('.')) return false;
    if (skipsPackageContents && !rest.empty() && component.ends_with(kPackageSuffix)) return false;
  }
  return true;
}

bool ScopeFilter::enters(std::string_view root, std::string_view path) const {
  if (isExcluded(std::string(path) + '/')) return false;
  return path == root || !skipsPackageContents || !path.ends_with(kPackageSuffix);
}

bool isBelow(std::string_view folder, std::string_view path) {
  return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

bool isAtOrBelow(std::string_view folder, std::string_view path) {
  return path == folder || isBelow(folder, path);
}

std::string_view parentOf(std::string_view path) {
  const auto slash = path.rfind('/');
  return path.substr(0, slash == std::string_view::npos ? 0 : slash);
}

std::string withoutTrailingSlashes(std::string path) {
  while (path.ends_with('/')) path.pop_back();
  return path;
}

}  // namespace zelnor::platform
