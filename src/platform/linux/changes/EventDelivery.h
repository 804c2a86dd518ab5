#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ChangeStream.h"
#include "platform/linux/changes/EntryState.h"
#include "platform/linux/changes/EventCoalescer.h"
#include "platform/linux/changes/EventIdentifiers.h"
#include "platform/linux/changes/HiddenNames.h"
#include "platform/linux/changes/StreamScope.h"

namespace zelnor::platform {

/// What a delivery needs to know about the places it looks at. Called on the stream's queue.
class PlaceKeeper {
 public:
  virtual ~PlaceKeeper() = default;

  /// Whether the file system that `path` belongs to is where it should be, so that an entry that is
  /// not found is really gone.
  virtual bool isInPlace(std::string_view path) = 0;
  /// The entry at `path` could not be looked at.
  virtual void couldNotLook(const std::string& path) = 0;
  /// There is a folder at `path` where nobody saw one: what is in it is not known.
  virtual void foundFolder(const std::string& path) = 0;
};

/// Turns changed paths into events: collects them over the latency, looks at each one, numbers the
/// events and hands them to the callback on the queue.
///
/// What an event says is decided by that look, not by what was seen to happen: whichever way
/// changes of one path follow each other, the look that comes after the last of them tells how it
/// ended.
class EventDelivery : public std::enable_shared_from_this<EventDelivery> {
 public:
  EventDelivery(const ChangeStreamOptions& options, const StreamScope& scope,
                ChangeStream::Callback callback);

  /// Begins to deliver on `queue`, first what changed before. `places` is used until `stop`.
  /// Answers whether that is all that changed before.
  bool start(SerialQueue& queue, PlaceKeeper& places);
  /// Whether so much changed before `start` that it was dropped, and all that follows until then.
  [[nodiscard]] bool isTooMuch() const;
  /// When it returns no callback runs and none follows.
  void stop();

  /// Something about the entry at `path` changed. Whoever saw that it left, or that it is no
  /// folder, says so (ItemRemoved, ItemIsFile). Out of scope: ignored. Thread-safe, never waits.
  void changed(std::string path, std::uint32_t flags);
  /// A walk found the file at `path`, which has other names. Looks at it; thread-safe.
  void foundName(const std::string& path, std::uint64_t inode);
  /// Reports `path` with exactly these flags. Thread-safe, never waits.
  void announce(std::string path, std::uint32_t flags);
  /// Waits while many changes wait for delivery; for those who produce them faster than they go.
  void waitForRoom(const std::stop_token& stop);

 private:
  using TimePoint = SerialQueue::TimePoint;

  void collect(std::string path, std::uint32_t flags);
  void hide(const std::string& path, std::uint64_t inode);
  void schedule();
  [[nodiscard]] TimePoint due() const;
  void deliver();
  std::vector<ChangeEvent> resolve(std::vector<PendingChange> changes);
  std::optional<std::uint32_t> flagsOrLoss(const PendingChange& change);
  std::optional<std::uint32_t> flagsOf(const PendingChange& change);
  std::optional<std::uint32_t> removalIfKnown(const std::string& path);
  void reportNamesOfFormer(const PendingChange& change, std::optional<std::uint64_t> present);
  void reportOtherNames(const std::string& path, std::uint64_t inode);

  const StreamScope& scope_;
  const std::shared_ptr<IndexView> index_;
  const std::chrono::steady_clock::duration latency_;
  const std::size_t maxCollected_;
  const std::int64_t began_;  ///< nanoseconds since 1970
  const bool isDeferred_;
  const ChangeStream::Callback callback_;
  HiddenNames hidden_;
  EventIdentifiers identifiers_;  ///< used on the queue
  PlaceKeeper* places_ = nullptr;

  mutable std::mutex mutex_;
  std::condition_variable_any hasRoom_;
  SerialQueue* queue_ = nullptr;
  EventCoalescer pending_;
  std::vector<PendingChange> announcements_;
  bool isTooMuch_ = false;
  bool isScheduled_ = false;
  TimePoint lastDelivery_;
  std::stop_source stop_;
};

}  // namespace zelnor::platform
