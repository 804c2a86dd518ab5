#include "platform/linux/changes/FanotifyQueue.h"

#include <fcntl.h>
#include <sys/fanotify.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cstring>
#include <functional>
#include <string>
#include <utility>

namespace zelnor::platform {

namespace {

constexpr std::uint64_t kArrived = FAN_CREATE | FAN_MOVED_TO;
constexpr std::uint64_t kLeft = FAN_DELETE | FAN_MOVED_FROM;
constexpr std::uint64_t kRenamed = FAN_MOVED_TO | FAN_MOVED_FROM;
constexpr std::uint64_t kWritten = FAN_MODIFY | FAN_CLOSE_WRITE;
constexpr std::uint64_t kMask = kArrived | kLeft | kWritten | FAN_ATTRIB | FAN_ONDIR;
/// The name under which a folder's own events come.
constexpr std::string_view kSelf = ".";

constexpr std::size_t kEventBufferSize = std::size_t{256} * 1024;

/// Reads the record that names the folder and the entry, fanotify(7). Other records say less.
std::optional<FanotifyEvent> parse(const fanotify_event_metadata& metadata,
                                   std::span<const std::byte> records) {
  while (records.size() >= sizeof(fanotify_event_info_fid)) {
    const auto& record = *reinterpret_cast<const fanotify_event_info_fid*>(records.data());
    if (record.hdr.info_type == FAN_EVENT_INFO_TYPE_DFID_NAME) {
      FanotifyEvent event{.folder = {}, .name = {}, .mask = metadata.mask};
      std::memcpy(&event.folder.fileSystem, &record.fsid, sizeof event.folder.fileSystem);
      const auto rest = records.first(record.hdr.len).subspan(sizeof record);
      const auto& handle = *reinterpret_cast<const file_handle*>(rest.data());
      const auto handleSize = sizeof handle + handle.handle_bytes;
      event.folder.handle = rest.first(handleSize);
      event.name = reinterpret_cast<const char*>(rest.subspan(handleSize).data());
      if (event.name == kSelf) event.name = {};
      return event;
    }
    records = records.subspan(record.hdr.len);
  }
  return std::nullopt;
}

bool mark(const FileDescriptor& queue, const FileDescriptor& folder, unsigned flags,
          std::uint64_t mask) {
  return ::fanotify_mark(queue.get(), flags | FAN_MARK_ONLYDIR, mask, folder.get(), ".") == 0;
}

}  // namespace

std::uint64_t FolderHandle::key() const {
  std::string bytes(sizeof fileSystem + handle.size(), '\0');
  std::memcpy(bytes.data(), &fileSystem, sizeof fileSystem);
  std::memcpy(bytes.data() + sizeof fileSystem, handle.data(), handle.size());
  const std::uint64_t hash = std::hash<std::string>{}(bytes);
  return hash == 0 ? 1 : hash;
}

FolderChange FanotifyEvent::describe(std::string folderPath) const {
  return {.folder = std::move(folderPath),
          .name = std::string(name),
          .isFolder = (mask & FAN_ONDIR) != 0,
          .arrived = (mask & kArrived) != 0,
          .left = (mask & kLeft) != 0,
          .renamed = (mask & kRenamed) != 0,
          .written = (mask & kWritten) != 0,
          .attributesChanged = (mask & FAN_ATTRIB) != 0};
}

bool FanotifyEvent::movesFolders() const {
  return (mask & FAN_ONDIR) != 0 && (mask & (kArrived | kLeft)) != 0;
}

std::optional<FanotifyQueue> FanotifyQueue::open() {
  constexpr unsigned kFlags = FAN_CLASS_NOTIF | FAN_CLOEXEC | FAN_NONBLOCK | FAN_REPORT_DFID_NAME;
  FileDescriptor queue(::fanotify_init(kFlags, O_RDONLY | O_CLOEXEC));
  if (!queue) return std::nullopt;
  return FanotifyQueue(std::move(queue));
}

FanotifyQueue::FanotifyQueue(FileDescriptor queue)
    : queue_(std::move(queue)), buffer_(kEventBufferSize) {}

bool FanotifyQueue::markFileSystem(const FileDescriptor& folder) const {
  return mark(queue_, folder, FAN_MARK_ADD | FAN_MARK_FILESYSTEM, kMask);
}

bool FanotifyQueue::markFolder(const FileDescriptor& folder) const {
  return mark(queue_, folder, FAN_MARK_ADD, kMask | FAN_EVENT_ON_CHILD);
}

bool FanotifyQueue::unmarkFolder(const FileDescriptor& folder) const {
  return mark(queue_, folder, FAN_MARK_REMOVE, kMask | FAN_EVENT_ON_CHILD);
}

bool FanotifyQueue::ignoreFolder(const FileDescriptor& folder) const {
  return mark(queue_, folder, FAN_MARK_ADD | FAN_MARK_IGNORE_SURV, kMask | FAN_EVENT_ON_CHILD);
}

void FanotifyQueue::read(const std::function<void(const FanotifyEvent&)>& visit,
                         const std::function<void()>& lost) {
  for (;;) {
    const auto length = ::read(queue_.get(), buffer_.data(), buffer_.size());
    if (length <= 0) return;
    auto left = std::span<const std::byte>(buffer_).first(static_cast<std::size_t>(length));
    while (left.size() >= sizeof(fanotify_event_metadata)) {
      // The kernel aligns events to four bytes, less than their numbers want.
      fanotify_event_metadata metadata{};
      std::memcpy(&metadata, left.data(), sizeof metadata);
      const auto whole = left.first(metadata.event_len);
      left = left.subspan(metadata.event_len);
      if ((metadata.mask & FAN_Q_OVERFLOW) != 0) {
        lost();
      } else if (const auto event = parse(metadata, whole.subspan(metadata.metadata_len))) {
        visit(*event);
      }
    }
  }
}

std::optional<FolderHandle> handleOf(const FileDescriptor& folder,
                                     std::vector<std::byte>& storage) {
  struct statfs status{};
  if (!folder || ::fstatfs(folder.get(), &status) != 0) return std::nullopt;
  storage.resize(sizeof(file_handle) + MAX_HANDLE_SZ);
  auto* const handle = reinterpret_cast<file_handle*>(storage.data());
  handle->handle_bytes = MAX_HANDLE_SZ;
  int mount = 0;
  if (::name_to_handle_at(folder.get(), "", handle, &mount, AT_EMPTY_PATH) != 0) {
    return std::nullopt;
  }
  storage.resize(sizeof(file_handle) + handle->handle_bytes);
  return FolderHandle{.fileSystem = status.f_fsid, .handle = storage};
}

}  // namespace zelnor::platform
