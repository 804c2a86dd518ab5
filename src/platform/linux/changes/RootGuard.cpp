#include "platform/linux/changes/RootGuard.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "platform/AtomicFile.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/linux/changes/EntryState.h"

// The memory holds the mount points at, above and below the roots, each followed by a NUL byte.

namespace zelnor::platform {

namespace {

constexpr const char* kGuardFileName = "/mount-points";
constexpr std::uint32_t kNamesMask =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ATTRIB | IN_ONLYDIR;
constexpr std::uint32_t kRootMask = IN_MOVE_SELF | IN_DELETE_SELF | IN_ATTRIB | IN_ONLYDIR;
constexpr std::uint32_t kMoveMask = IN_MOVED_FROM | IN_MOVED_TO | IN_MOVE_SELF;

/// Whether something is in the folder; not if it cannot be listed.
bool holdsEntries(const std::string& folder) {
  auto entries = DirectoryEnumerator::open(folder, {});
  return entries && entries->next();
}

/// Whether nothing is mounted on this empty folder.
bool isBareMountPoint(const std::string& point) {
  const auto state = examine(point);
  return state.isFolder() && !state.isMountPoint && !holdsEntries(point);
}

/// The components of a path, each with what inotify calls it.
std::set<std::string> componentsOf(std::string_view path) {
  std::set<std::string> names;
  for (; !path.empty(); path = parentOf(path)) names.emplace(path.substr(path.rfind('/') + 1));
  return names;
}

}  // namespace

RootGuard::RootGuard(const std::vector<std::string>& roots, const std::string& stateFolder)
    : memory_(stateFolder.empty() ? std::string() : stateFolder + kGuardFileName),
      names_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      mountInfo_(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)) {
  for (const auto& path : roots) {
    roots_.push_back({.path = path, .identity = {}, .mountPoint = {}});
    components_.merge(componentsOf(path));
  }
  recall();
}

RootGuard::News RootGuard::look() {
  const std::scoped_lock lock(mutex_);
  News news;
  const auto mounts = MountTable::read();
  for (auto& root : roots_) {
    // Watched first and looked at after.
    watchNames(root.path);
    lookAt(root, mounts, news);
  }
  lookBelow(mounts, news);
  remember();
  return news;
}

std::optional<RootGuard::Identity> RootGuard::identify(const std::string& path) {
  const auto state = examineTarget(path);
  if (!state.isFolder()) return std::nullopt;
  return Identity{.device = state.attributes.device, .inode = state.attributes.inode};
}

void RootGuard::lookAt(Root& root, const MountTable& mounts, News& news) {
  const auto identity = identify(root.path);
  const auto covering = mounts.covering(root.path);
  // With something in it, the place is used without its former file system.
  const bool isUnmounted = root.mountPoint && isBelow(covering, *root.mountPoint) &&
                           !holdsEntries(root.path.empty() ? "/" : root.path);
  if (!identity || isUnmounted) {
    root.isAway = true;
    root.wasUnmounted = root.wasUnmounted || isUnmounted;
    return;
  }
  settle(root, *identity, mounts, news);
}

/// There is a folder at the root's path, on the file system that belongs there.
void RootGuard::settle(Root& root, const Identity& identity, const MountTable& mounts, News& news) {
  const bool isSeenBefore = root.identity.has_value();
  const bool isSame = root.identity == identity;
  // What changed while it was elsewhere, however short, went by another name.
  const bool isBack = std::exchange(root.isAway, false) || std::exchange(root.wasMoved, false);
  // A file system can have another number each time it is mounted.
  const bool mayDiffer = std::exchange(root.wasUnmounted, false);
  root.identity = identity;
  root.mountPoint = mounts.covering(root.path);
  if (isSeenBefore && !isSame && !mayDiffer) {
    news.replaced.push_back(root.path);
  } else if (isBack) {
    news.toCompare.push_back(root.path);
  }
}

void RootGuard::lookBelow(const MountTable& mounts, News& news) {
  std::set<std::string> now;
  for (const auto& root : roots_) {
    for (auto& point : mounts.below(root.path)) now.insert(std::move(point));
  }
  for (const auto& point : now) {
    unmounted_.erase(point);
    if (!present_.contains(point)) news.toCompare.push_back(point);
  }
  for (const auto& point : std::exchange(present_, now)) {
    if (!now.contains(point)) leave(point, news);
  }
  std::erase_if(unmounted_, [&news](const std::string& point) {
    const bool isUsedOtherwise = !isBareMountPoint(point);
    if (isUsedOtherwise) news.toCompare.push_back(point);
    return isUsedOtherwise;
  });
}

/// Nothing is mounted at `point` any more. What was there is missed as long as the bare mount point
/// stays: without it, or with something else in it, this is no place for a mount.
void RootGuard::leave(const std::string& point, News& news) {
  if (isBareMountPoint(point)) {
    unmounted_.insert(point);
    news.bared.push_back(point);
  } else {
    news.toCompare.push_back(point);
  }
}

bool RootGuard::isInPlace(std::string_view path) {
  const std::scoped_lock lock(mutex_);
  const auto isElsewhere = [path](const Root& root) {
    return isBelow(root.path, path) && (root.isAway || identify(root.path) != root.identity);
  };
  const auto isMissed = [path](const std::string& point) {
    return isBelow(point, path) && isBareMountPoint(point);
  };
  return std::ranges::none_of(roots_, isElsewhere) && std::ranges::none_of(present_, isMissed) &&
         std::ranges::none_of(unmounted_, isMissed);
}

bool RootGuard::isAnyAway() const {
  const std::scoped_lock lock(mutex_);
  return std::ranges::any_of(roots_, &Root::isAway);
}

bool RootGuard::takeHints() {
  bool isHint = false;
  constexpr std::size_t kBufferSize = std::size_t{16} * 1024;
  alignas(inotify_event) std::array<char, kBufferSize> buffer{};
  for (;;) {
    const auto length = ::read(names_.get(), buffer.data(), buffer.size());
    if (length <= 0) return isHint;
    for (ssize_t offset = 0; offset < length;) {
      const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + offset);
      offset += static_cast<ssize_t>(sizeof event + event.len);
      // The folders above the roots can be busy with other names.
      if (event.len != 0 && !components_.contains(event.name)) continue;
      isHint = true;
      if ((event.mask & kMoveMask) != 0) noteMove(event.wd, event.len != 0 ? event.name : "");
    }
  }
}

/// What `name` leads to in the folder that is watched as `watch`, or that folder itself, was moved.
void RootGuard::noteMove(int watch, std::string_view name) {
  const std::scoped_lock lock(mutex_);
  const auto folder = watches_.find(watch);
  if (folder == watches_.end()) return;
  const auto moved = name.empty() ? folder->second : folder->second + '/' + std::string(name);
  for (auto& root : roots_) root.wasMoved = root.wasMoved || isAtOrBelow(moved, root.path);
}

/// Watches the root, and in every folder above it the name that leads to it.
void RootGuard::watchNames(const std::string& root) {
  watch(root, kRootMask);
  if (root.empty()) return;
  for (auto folder = parentOf(root); !folder.empty(); folder = parentOf(folder)) {
    watch(std::string(folder), kNamesMask);
  }
  watch("", kNamesMask);
}

void RootGuard::watch(const std::string& folder, std::uint32_t mask) {
  if (!names_) return;
  const char* path = folder.empty() ? "/" : folder.c_str();
  const int watch = ::inotify_add_watch(names_.get(), path, mask | IN_MASK_ADD);
  if (watch >= 0) watches_.insert_or_assign(watch, folder);
}

void RootGuard::recall() {
  if (memory_.empty()) return;
  std::ifstream file(memory_, std::ios::binary);
  std::string point;
  while (std::getline(file, point, '\0')) {
    for (auto& root : roots_) {
      const bool isDeeper = !root.mountPoint || root.mountPoint->size() < point.size();
      if (isAtOrBelow(point, root.path) && isDeeper) root.mountPoint = point;
      if (isBelow(root.path, point)) unmounted_.insert(point);
    }
  }
}

void RootGuard::remember() {
  if (memory_.empty()) return;
  std::set<std::string> points = present_;
  points.insert(unmounted_.begin(), unmounted_.end());
  for (const auto& root : roots_) {
    if (root.mountPoint) points.insert(*root.mountPoint);
  }
  std::string text;
  for (const auto& point : points) text += point + '\0';
  if (text == remembered_) return;
  try {
    replaceFile(memory_, text);
    remembered_ = std::move(text);
  } catch (const std::system_error&) {
    // Only the next start is the poorer for it.
  }
}

}  // namespace zelnor::platform
