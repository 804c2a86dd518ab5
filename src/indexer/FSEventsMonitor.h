#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/ChangeStream.h"
#include "platform/FolderVisitor.h"
#include "platform/SerialQueue.h"

namespace zelnor {

/// A change of one entry.
struct FSEventItem {
  enum class EventType : std::uint8_t { created, removed, modified, renamed };

  std::string path;  ///< absolute
  EventType type = EventType::modified;
  std::uint32_t flags = 0;  ///< as delivered

  friend bool operator==(const FSEventItem&, const FSEventItem&) = default;
};

/// Events were lost, or a root is another folder now: what is indexed must be scanned anew.
struct FSEventRescanRequest {
  std::string reason;
  std::uint32_t flags = 0;  ///< of the event that says so

  friend bool operator==(const FSEventRescanRequest&, const FSEventRescanRequest&) = default;
};

/// What a delivered batch means.
struct FSEventTranslation {
  std::vector<FSEventItem> items;
  std::optional<std::uint64_t> latestEventID;
  std::optional<FSEventRescanRequest> rescan;  ///< then there is nothing else
};

/// Translates a batch. The first event that tells of a loss makes the whole batch a rescan request.
FSEventTranslation translate(std::span<const platform::ChangeEvent> events);

/// Follows changes below a set of folders and hands them on as items.
///
/// Operations may be called from any thread, but `start` and `stop` not by a reaction. Reactions
/// are called on the monitor's own serial queue, one batch at a time, with no lock held.
class FSEventsMonitor final : public platform::FolderVisitor {
 public:
  using Handler = std::function<void(std::vector<FSEventItem>)>;
  /// Creates the stream that a monitor listens to; nothing if there can be none.
  using StreamFactory = std::function<std::unique_ptr<platform::ChangeStream>(
      std::vector<std::string> paths, std::uint64_t sinceWhen, double latency, std::uint32_t flags,
      platform::ChangeStream::Callback callback)>;

  /// `latency` in seconds.
  FSEventsMonitor(double latency, Handler handler, StreamFactory createStream);
  FSEventsMonitor(const FSEventsMonitor&) = delete;
  FSEventsMonitor& operator=(const FSEventsMonitor&) = delete;
  ~FSEventsMonitor() override;

  /// Gets the newest identifier of each batch, before the handler gets its items. Set before
  /// `listen` and `start`.
  std::function<void(std::uint64_t)> onLatestEventID;
  /// Set before `listen` and `start`.
  std::function<void(const FSEventRescanRequest&)> onRescanNeeded;

  /// Collects what happens below `paths`, without any reaction, while somebody walks them who tells
  /// the monitor of each folder and calls `start` when the index holds what the walk found. Answers
  /// whether it does; not if it runs or listens already, if there are no paths, or if no stream can
  /// be had.
  bool listen(const std::vector<std::string>& paths, std::uint64_t sinceWhen);
  /// Starts to follow `paths` from the event `sinceWhen`, or kFSEventStreamEventIdSinceNow. Does
  /// nothing if it runs already or there are no paths; stays stopped if no stream can be had. A
  /// monitor that listens begins to report, of the paths that it listens to.
  void start(const std::vector<std::string>& paths, std::uint64_t sinceWhen);
  /// Ends listening too. When it returns, no reaction runs and none follows.
  void stop();
  /// Whether it was started; one that only listens does not run.
  [[nodiscard]] bool isRunning() const;

  /// The walk comes to this folder, could not list it, or finds a file of several names. No effect
  /// unless the monitor listens.
  void willList(const std::string& folder) override;
  void couldNotList(const std::string& folder) override;
  void foundName(const std::string& path, std::uint64_t inode) override;

 private:
  void open(const std::vector<std::string>& paths, std::uint64_t sinceWhen);
  void close();

  const double latency_;
  const Handler handler_;
  const StreamFactory createStream_;

  mutable std::mutex lock_;
  std::unique_ptr<platform::SerialQueue> dispatchQueue_;
  std::unique_ptr<platform::ChangeStream> stream_;
  bool isRunning_ = false;
};

}  // namespace zelnor
