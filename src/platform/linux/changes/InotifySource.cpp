#include "platform/linux/changes/InotifySource.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <ctime>

namespace zelnor::platform {

namespace {

constexpr std::uint32_t kInotifyArrived = IN_CREATE | IN_MOVED_TO;
constexpr std::uint32_t kInotifyLeft = IN_DELETE | IN_MOVED_FROM;
constexpr std::uint32_t kInotifyRenamed = IN_MOVED_TO | IN_MOVED_FROM;
constexpr std::uint32_t kInotifyWritten = IN_MODIFY | IN_CLOSE_WRITE;
constexpr std::uint32_t kInotifyMask = kInotifyArrived | kInotifyLeft | kInotifyWritten | IN_ATTRIB;

constexpr std::size_t kInotifyBufferSize = std::size_t{256} * 1024;

FolderChange translate(const inotify_event& event, const std::string& folder) {
  return {.folder = folder,
          .name = event.len > 0 ? std::string(event.name) : std::string(),
          .isFolder = (event.mask & IN_ISDIR) != 0,
          .arrived = (event.mask & kInotifyArrived) != 0,
          .left = (event.mask & kInotifyLeft) != 0,
          .renamed = (event.mask & kInotifyRenamed) != 0,
          .written = (event.mask & kInotifyWritten) != 0,
          .attributesChanged = (event.mask & IN_ATTRIB) != 0};
}

FollowedFolders::Key keyOf(int watch) { return static_cast<FollowedFolders::Key>(watch); }

}  // namespace

std::unique_ptr<InotifySource> InotifySource::create(std::size_t limit) {
  FileDescriptor queue(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  if (!queue) return nullptr;
  return std::make_unique<InotifySource>(std::move(queue), limit);
}

InotifySource::InotifySource(FileDescriptor queue, std::size_t limit)
    : queue_(std::move(queue)), folders_(limit), buffer_(kInotifyBufferSize) {}

bool InotifySource::follow(const std::string& path, const EntryState& state, ChangeSink& sink) {
  const auto rank = watchRank(path, std::time(nullptr) - state.attributes.mtime);
  if (!folders_.admits(path, rank)) return false;
  const int watch = addWatchMakingRoom(path, state, rank, sink);
  if (watch < 0) return false;
  const auto excess = folders_.add(path, keyOf(watch), rank);
  if (excess) giveUp(*excess, sink);
  return !excess || excess->key != keyOf(watch);
}

int InotifySource::addWatchMakingRoom(const std::string& path, const EntryState& state,
                                      std::int32_t rank, ChangeSink& sink) {
  const int watch = addWatch(path, state.isBehindLink);
  if (watch >= 0 || errno != ENOSPC) return watch;
  const auto excess = folders_.makeRoom(rank);
  if (!excess) return -1;
  giveUp(*excess, sink);
  return addWatch(path, state.isBehindLink);
}

int InotifySource::addWatch(const std::string& path, bool followsLink) const {
  const auto mask = kInotifyMask | IN_ONLYDIR | (followsLink ? 0U : IN_DONT_FOLLOW);
  if (path.empty()) return ::inotify_add_watch(queue_.get(), "/", mask);
  if (path.size() < PATH_MAX) return ::inotify_add_watch(queue_.get(), path.c_str(), mask);
  // The kernel refuses longer paths; the descriptor's link in /proc leads to the folder all the
  // same.
  const auto folder = openFolder(path, followsLink);
  if (!folder) return -1;
  const auto link = "/proc/self/fd/" + std::to_string(folder.get());
  return ::inotify_add_watch(queue_.get(), link.c_str(), kInotifyMask | IN_ONLYDIR);
}

void InotifySource::giveUp(const FollowedFolders::Folder& folder, ChangeSink& sink) {
  ::inotify_rm_watch(queue_.get(), static_cast<int>(folder.key));
  if (!folder.path.empty()) sink.givenUp({folder.path});
}

void InotifySource::releaseDetached() {
  for (const auto key : folders_.takeDetached()) {
    ::inotify_rm_watch(queue_.get(), static_cast<int>(key));
  }
}

void InotifySource::readChanges(ChangeSink& sink) {
  for (;;) {
    const auto length = ::read(queue_.get(), buffer_.data(), buffer_.size());
    if (length <= 0) return;
    report(std::span(buffer_).first(static_cast<std::size_t>(length)), sink);
  }
}

void InotifySource::report(std::span<const std::byte> events, ChangeSink& sink) {
  while (!events.empty()) {
    const auto& event = *reinterpret_cast<const inotify_event*>(events.data());
    events = events.subspan(sizeof event + event.len);
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
      sink.changesLost();
    } else if ((event.mask & IN_IGNORED) != 0) {
      folders_.erase(keyOf(event.wd));
    } else if (const auto folder = folders_.pathOf(keyOf(event.wd))) {
      sink.folderChanged(translate(event, *folder));
    }
  }
}

}  // namespace zelnor::platform
