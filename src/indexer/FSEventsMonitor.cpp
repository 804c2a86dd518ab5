#include "indexer/FSEventsMonitor.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace zelnor {

namespace {

using namespace platform;  // the names of flags are long enough
using EventType = FSEventItem::EventType;

constexpr std::uint32_t kCreateFlags = kFSEventStreamCreateFlagUseCFTypes |
                                       kFSEventStreamCreateFlagNoDefer |
                                       kFSEventStreamCreateFlagFileEvents;

struct RescanReason {
  std::uint32_t flag;
  std::string_view text;
};
/// In the order in which they count.
constexpr std::array kRescanReasons{
    RescanReason{kFSEventStreamEventFlagMustScanSubDirs, "FSEvents requested a full subtree scan"},
    RescanReason{kFSEventStreamEventFlagKernelDropped, "FSEvents kernel queue dropped events"},
    RescanReason{kFSEventStreamEventFlagUserDropped, "FSEvents user queue dropped events"},
    RescanReason{kFSEventStreamEventFlagRootChanged, "FSEvents detected a root path change"}};

std::optional<FSEventRescanRequest> rescanRequest(std::uint32_t flags) {
  const auto* const reason = std::ranges::find_if(
      kRescanReasons, [flags](const auto& candidate) { return (flags & candidate.flag) != 0; });
  if (reason == kRescanReasons.end()) return std::nullopt;
  return FSEventRescanRequest{.reason = std::string(reason->text), .flags = flags};
}

EventType typeOf(std::uint32_t flags) {
  if ((flags & kFSEventStreamEventFlagItemCreated) != 0) return EventType::created;
  if ((flags & kFSEventStreamEventFlagItemRemoved) != 0) return EventType::removed;
  if ((flags & kFSEventStreamEventFlagItemRenamed) != 0) return EventType::renamed;
  return EventType::modified;
}

/// The reactions as they were when the stream was started.
struct CallbackContext {
  FSEventsMonitor::Handler handler;
  std::function<void(std::uint64_t)> onEventID;
  std::function<void(const FSEventRescanRequest&)> onRescanNeeded;

  void operator()(std::span<const ChangeEvent> events) const {
    auto translation = translate(events);
    if (translation.rescan) {
      if (onRescanNeeded) onRescanNeeded(*translation.rescan);
      return;
    }
    if (translation.latestEventID && onEventID) onEventID(*translation.latestEventID);
    if (!translation.items.empty()) handler(std::move(translation.items));
  }
};

}  // namespace

FSEventTranslation translate(std::span<const ChangeEvent> events) {
  FSEventTranslation translation;
  translation.items.reserve(events.size());
  std::uint64_t latest = 0;
  for (const auto& event : events) {
    latest = std::max(latest, event.identifier);
    if (auto request = rescanRequest(event.flags)) {
      return {.items = {}, .latestEventID = {}, .rescan = std::move(request)};
    }
    translation.items.push_back(
        {.path = event.path, .type = typeOf(event.flags), .flags = event.flags});
  }
  if (latest != 0) translation.latestEventID = latest;
  return translation;
}

FSEventsMonitor::FSEventsMonitor(double latency, Handler handler, StreamFactory createStream)
    : latency_(latency), handler_(std::move(handler)), createStream_(std::move(createStream)) {}

FSEventsMonitor::~FSEventsMonitor() { stop(); }

bool FSEventsMonitor::listen(const std::vector<std::string>& paths, std::uint64_t sinceWhen) {
  const std::scoped_lock lock(lock_);
  if (stream_) return false;
  open(paths, sinceWhen);
  if (stream_ && !stream_->listen()) close();
  return stream_ != nullptr;
}

void FSEventsMonitor::start(const std::vector<std::string>& paths, std::uint64_t sinceWhen) {
  const std::scoped_lock lock(lock_);
  if (isRunning_) return;
  if (!stream_) open(paths, sinceWhen);
  if (!stream_) return;
  isRunning_ = stream_->start();
  if (!isRunning_) close();
}

void FSEventsMonitor::stop() {
  const std::scoped_lock lock(lock_);
  if (!stream_) return;
  stream_->stop();
  close();
}

bool FSEventsMonitor::isRunning() const {
  const std::scoped_lock lock(lock_);
  return isRunning_;
}

void FSEventsMonitor::willList(const std::string& folder) {
  const std::scoped_lock lock(lock_);
  if (stream_ && !isRunning_) stream_->willList(folder);
}

void FSEventsMonitor::couldNotList(const std::string& folder) {
  const std::scoped_lock lock(lock_);
  if (stream_ && !isRunning_) stream_->couldNotList(folder);
}

void FSEventsMonitor::foundName(const std::string& path, std::uint64_t inode) {
  const std::scoped_lock lock(lock_);
  if (stream_ && !isRunning_) stream_->foundName(path, inode);
}

/// With the lock held.
void FSEventsMonitor::open(const std::vector<std::string>& paths, std::uint64_t sinceWhen) {
  if (paths.empty()) return;
  const CallbackContext context{
      .handler = handler_, .onEventID = onLatestEventID, .onRescanNeeded = onRescanNeeded};
  stream_ = createStream_(paths, sinceWhen, latency_, kCreateFlags, context);
  if (!stream_) return;
  dispatchQueue_ = std::make_unique<SerialQueue>("com.zelnor.fsevents");
  stream_->setQueue(dispatchQueue_.get());
}

/// With the lock held.
void FSEventsMonitor::close() {
  stream_->invalidate();
  stream_.reset();
  dispatchQueue_.reset();
  isRunning_ = false;
}

}  // namespace zelnor
