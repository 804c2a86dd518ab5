#include "platform/linux/changes/EventDelivery.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

namespace zelnor::platform {

namespace {

constexpr std::size_t kMaxEventsPerBatch = 10'000;
constexpr std::size_t kManyPending = 5 * kMaxEventsPerBatch;

/// Beside the flags that are delivered: the change may concern the file's other names, and they are
/// not reported yet.
constexpr std::uint32_t kConcernsNames = 0x8000'0000;
constexpr std::uint32_t kContentFlags =
    kFSEventStreamEventFlagItemModified | kFSEventStreamEventFlagItemInodeMetaMod;
constexpr std::uint32_t kPresentFlags =
    kContentFlags | kFSEventStreamEventFlagItemCreated | kFSEventStreamEventFlagItemRenamed;
/// Another entry may have come to the path.
constexpr std::uint32_t kReplacedFlags =
    kFSEventStreamEventFlagItemRemoved | kFSEventStreamEventFlagItemRenamed;

/// A name of a file of several; should there be a folder now, it is to be looked into.
constexpr std::uint32_t kChangedFile =
    kFSEventStreamEventFlagItemModified | kFSEventStreamEventFlagItemIsFile;

/// What is in a folder that was reported so may not have been looked at.
constexpr std::uint32_t kNoFolderFlags =
    kFSEventStreamEventFlagItemRemoved | kFSEventStreamEventFlagItemIsFile;

std::uint32_t kindFlag(const FileAttributes& attributes) {
  if (attributes.isSymlink) return kFSEventStreamEventFlagItemIsSymlink;
  return attributes.isDirectory ? kFSEventStreamEventFlagItemIsDir
                                : kFSEventStreamEventFlagItemIsFile;
}

std::uint32_t presentFlags(std::uint32_t seen, const FileAttributes& attributes) {
  const auto flags = seen & kPresentFlags;
  return (flags != 0 ? flags : kFSEventStreamEventFlagItemModified) | kindFlag(attributes);
}

std::uint32_t goneFlags(std::uint32_t seen) {
  const bool wasRenamed = (seen & kFSEventStreamEventFlagItemRenamed) != 0;
  return wasRenamed ? kFSEventStreamEventFlagItemRenamed : kFSEventStreamEventFlagItemRemoved;
}

bool concernsNames(const PendingChange& change) { return (change.flags & kConcernsNames) != 0; }

/// Nanoseconds since 1970, less what the clocks of file systems are behind.
std::int64_t justNow() {
  using namespace std::chrono;
  const auto time = system_clock::now() - seconds(1);
  return duration_cast<nanoseconds>(time.time_since_epoch()).count();
}

std::uint64_t firstIdentifier(std::uint64_t sinceWhen) {
  return sinceWhen == kFSEventStreamEventIdSinceNow ? 0 : sinceWhen;
}

}  // namespace

EventDelivery::EventDelivery(const ChangeStreamOptions& options, const StreamScope& scope,
                             ChangeStream::Callback callback)
    : scope_(scope),
      index_(options.index),
      latency_(std::chrono::duration_cast<std::chrono::steady_clock::duration>(options.latency)),
      maxCollected_(options.maxCollected),
      began_(justNow()),
      isDeferred_((options.flags & kFSEventStreamCreateFlagNoDefer) == 0),
      callback_(std::move(callback)),
      identifiers_(options.stateFolder, firstIdentifier(options.sinceWhen)) {}

bool EventDelivery::start(SerialQueue& queue, PlaceKeeper& places) {
  const std::scoped_lock lock(mutex_);
  places_ = &places;
  queue_ = &queue;
  schedule();
  return !std::exchange(isTooMuch_, false);
}

bool EventDelivery::isTooMuch() const {
  const std::scoped_lock lock(mutex_);
  return isTooMuch_;
}

void EventDelivery::stop() {
  stop_.request_stop();
  SerialQueue* queue = nullptr;
  {
    const std::scoped_lock lock(mutex_);
    queue = std::exchange(queue_, nullptr);
  }
  if (queue != nullptr) queue->waitForRunning();
}

void EventDelivery::changed(std::string path, std::uint32_t flags) {
  collect(std::move(path), flags | kConcernsNames);
}

void EventDelivery::collect(std::string path, std::uint32_t flags) {
  if (!scope_.includes(path, EntryKind::unknown)) return;
  const std::scoped_lock lock(mutex_);
  if (isTooMuch_) return;
  if (queue_ == nullptr && pending_.size() >= maxCollected_) {
    pending_ = {};
    isTooMuch_ = true;
    return;
  }
  pending_.add(std::move(path), flags);
  schedule();
}

void EventDelivery::foundName(const std::string& path, std::uint64_t inode) {
  const auto state = examine(path);
  if (state.statusChange >= began_) {
    changed(path, kChangedFile);
  } else if (state.isPresent() && !state.isReadable) {
    hide(path, inode);
  }
}

/// Noted first and then looked at again, so that no change of permissions slips in between.
void EventDelivery::hide(const std::string& path, std::uint64_t inode) {
  hidden_.add(path, inode);
  if (examine(path).isReadable) changed(path, kChangedFile);
}

void EventDelivery::announce(std::string path, std::uint32_t flags) {
  const std::scoped_lock lock(mutex_);
  announcements_.push_back({.path = std::move(path), .flags = flags});
  schedule();
}

void EventDelivery::waitForRoom(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  hasRoom_.wait(lock, stop, [this] { return pending_.size() < kManyPending; });
}

/// With the mutex held.
void EventDelivery::schedule() {
  if (isScheduled_ || queue_ == nullptr || (pending_.empty() && announcements_.empty())) return;
  isScheduled_ = true;
  queue_->postAt(due(), [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->deliver();
  });
}

/// With the mutex held.
EventDelivery::TimePoint EventDelivery::due() const {
  const auto now = std::chrono::steady_clock::now();
  // What exceeds a batch has waited long enough.
  if (pending_.size() >= kMaxEventsPerBatch) return now;
  return isDeferred_ ? now + latency_ : std::max(now, lastDelivery_ + latency_);
}

void EventDelivery::deliver() {
  std::vector<PendingChange> announcements;
  std::vector<PendingChange> changes;
  {
    const std::scoped_lock lock(mutex_);
    if (queue_ == nullptr) return;
    announcements = std::exchange(announcements_, {});
    changes =
        pending_.take(kMaxEventsPerBatch - std::min(kMaxEventsPerBatch, announcements.size()));
  }
  hasRoom_.notify_all();
  auto events = resolve(std::move(changes));
  for (auto& announcement : announcements) {
    events.push_back({.path = std::move(announcement.path), .flags = announcement.flags});
  }
  for (auto& event : events) event.identifier = identifiers_.next();
  if (!events.empty() && !stop_.stop_requested()) callback_(events);
  const std::scoped_lock lock(mutex_);
  isScheduled_ = false;
  lastDelivery_ = std::chrono::steady_clock::now();
  schedule();
}

std::vector<ChangeEvent> EventDelivery::resolve(std::vector<PendingChange> changes) {
  std::vector<ChangeEvent> events;
  events.reserve(changes.size());
  for (auto& change : changes) {
    if (stop_.stop_requested()) break;
    if (const auto flags = flagsOrLoss(change)) {
      events.push_back({.path = std::move(change.path), .flags = *flags});
    }
  }
  return events;
}

std::optional<std::uint32_t> EventDelivery::flagsOrLoss(const PendingChange& change) {
  try {
    return flagsOf(change);
  } catch (const std::exception&) {
    // The index cannot be read, so nobody knows what this change means for it.
    return kFSEventStreamEventFlagMustScanSubDirs | kFSEventStreamEventFlagUserDropped;
  }
}

std::optional<std::uint32_t> EventDelivery::flagsOf(const PendingChange& change) {
  auto state = examine(change.path);
  if (state.presence == EntryState::Presence::unknown) {
    // Noted first and looked at again, so that no change of permissions slips in between.
    places_->couldNotLook(change.path);
    state = examine(change.path);
    if (state.presence == EntryState::Presence::unknown) return std::nullopt;
  }
  if (state.presence == EntryState::Presence::gone) {
    if (!places_->isInPlace(change.path)) return std::nullopt;
    reportNamesOfFormer(change, /*present=*/std::nullopt);
    hidden_.forget(change.path);
    return goneFlags(change.flags);
  }
  if ((change.flags & kReplacedFlags) != 0) reportNamesOfFormer(change, state.attributes.inode);
  // Whether it may be read or no longer: that goes for all names.
  if (state.hasOtherNames && concernsNames(change)) {
    reportOtherNames(change.path, state.attributes.inode);
  }
  if (state.hasOtherNames && !state.isReadable) {
    hide(change.path, state.attributes.inode);
  } else {
    hidden_.forget(change.path);
  }
  // What a scan leaves out is not reported, unless something else was there before.
  if (!state.isReadable || !scope_.includes(change.path, kindOf(state.attributes))) {
    return removalIfKnown(change.path);
  }
  if (state.isFolder() && (change.flags & kNoFolderFlags) != 0) places_->foundFolder(change.path);
  return presentFlags(change.flags, state.attributes);
}

std::optional<std::uint32_t> EventDelivery::removalIfKnown(const std::string& path) {
  const bool isUnknown = index_ && !index_->inodeOf(path, stop_.get_token());
  return isUnknown ? std::nullopt : std::optional(kFSEventStreamEventFlagItemRemoved);
}

/// A file that was written, or whose permissions changed, and that lost this name then may have
/// others. `present` is what has the name now.
void EventDelivery::reportNamesOfFormer(const PendingChange& change,
                                        std::optional<std::uint64_t> present) {
  if (!index_ || (change.flags & kContentFlags) == 0 || !concernsNames(change)) return;
  auto former = index_->inodeOf(change.path, stop_.get_token());
  if (!former) former = hidden_.inodeOf(change.path);
  if (former && former != present) reportOtherNames(change.path, *former);
}

void EventDelivery::reportOtherNames(const std::string& path, std::uint64_t inode) {
  if (!index_) return;
  for (const auto& names :
       {index_->pathsWithInode(inode, stop_.get_token()), hidden_.namesOf(inode)}) {
    for (const auto& name : names) {
      if (name != path) collect(name, kChangedFile);
    }
  }
}

}  // namespace zelnor::platform
