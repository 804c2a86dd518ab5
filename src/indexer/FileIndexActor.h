#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "indexer/FSEventsMonitor.h"
#include "indexer/IndexConfiguration.h"
#include "indexer/IndexFiller.h"
#include "indexer/IndexMaintainer.h"
#include "indexer/LiveIndexStatus.h"
#include "indexer/PendingUpdates.h"
#include "platform/ChangeStream.h"
#include "platform/DefaultsStore.h"
#include "platform/HandoverGate.h"
#include "store/DatabaseManager.h"
#include "tasks/Actor.h"
#include "tasks/Task.h"
#include "tasks/TaskGroup.h"

namespace zelnor {

/// The writing side of the index: fills it from scratch and keeps it current.
///
/// Operations may be awaited from any thread. The owner awaits `shutDown()` before it destroys the
/// actor; an operation that is asked for after that has begun does nothing, and one that runs ends
/// early, without an error.
class FileIndexActor : public tasks::Actor, public IndexMaintainer {
 public:
  /// Creates the stream of changes; nothing if there can be none. May throw for the same reason.
  using StreamFactory = std::function<std::unique_ptr<platform::ChangeStream>(
      platform::ChangeStreamOptions, platform::ChangeStream::Callback)>;

  /// What the actor needs of the program; all of it outlives the actor.
  struct Surroundings {
    std::string dataFolder;      ///< holds the index
    tasks::Executor background;  ///< where blocking work runs, at least three threads
    tasks::Executor main;        ///< where the status is written
    platform::DefaultsStore& defaults;
    /// How changes are followed: what a stream needs besides the roots, their scope and the index
    /// itself, which the actor fills in. None: they are not, and the index is as its last rebuild
    /// left it.
    std::optional<platform::ChangeStreamOptions> changes = std::nullopt;
    /// Takes one line; any thread.
    std::function<void(const std::string&)> log = [](const std::string&) {};
    StreamFactory createStream = platform::createChangeStream;
  };

  /// Opens the index for writing. Blocks: not for the main thread. Throws DatabaseError, or
  /// std::filesystem::filesystem_error if the data folder cannot be created.
  explicit FileIndexActor(const Surroundings& surroundings);

  /// The actor's connection to the index.
  DatabaseManager& sharedDatabase() { return database_; }
  /// What the actor is doing. Main thread only.
  LiveIndexStatus& status() { return *status_; }

  /// What stops the rebuild is thrown, and shown by the status too.
  tasks::Async<void> rebuildIndex(IndexConfiguration config) override;

  /// For the launch: follows the configured roots, and makes the index complete if it is not. An
  /// empty index is rebuilt; a rebuild of the same configuration that was killed halfway goes on,
  /// keeping what it has written; one of another starts anew. Otherwise the change stream catches
  /// up with what happened meanwhile. Throws what `rebuildIndex` throws; changes are followed then
  /// too.
  tasks::Async<void> resume(IndexConfiguration config);

  tasks::Async<void> startMonitoring(IndexConfiguration config) override;
  tasks::Async<void> stopMonitoring();

  /// Brings the rows of these paths up to date with the disk. What was delivered earlier must have
  /// ended.
  tasks::Async<void> handleFSEvents(std::vector<FSEventItem> events);
  /// Rebuilds the index because changes were lost; one such rebuild at a time. Returns when it has
  /// begun.
  tasks::Async<void> scheduleAutomaticRebuild(std::string reason);

  /// Waits until the full-text table of the last rebuild has been merged; searches are right all
  /// the while.
  tasks::Async<void> settled();

  /// Stops whatever runs, in the middle of a statement if need be, and returns when nothing runs
  /// any more, nor will.
  tasks::Async<void> shutDown();

 private:
  using Operation = std::function<tasks::Async<void>(std::stop_token)>;
  using Start = IndexFiller::Start;

  tasks::Async<void> perform(Operation operation);

  // Everything from here on runs on the actor.
  tasks::Async<void> goOn(IndexConfiguration config, std::stop_token stop);
  tasks::Async<std::optional<Start>> neededRebuild(const IndexConfiguration& config);
  tasks::Async<void> replaceRebuild(IndexConfiguration config, Start start);
  tasks::Async<void> runRebuild(IndexConfiguration config, Start start, std::stop_token stop);
  void rebuildEnded(int number);
  [[nodiscard]] bool isRebuilding() const { return indexTask_ && !indexTask_.isDone(); }
  void requestRebuild(const std::string& reason);
  tasks::Async<void> rebuildAutomatically(std::string reason, IndexConfiguration config);

  void startMerging();
  tasks::Async<void> mergeInSteps(std::stop_token stop);

  void monitor(const IndexConfiguration& config, std::shared_ptr<FSEventsMonitor> prepared = {});
  std::shared_ptr<FSEventsMonitor> listen(const IndexConfiguration& config);
  [[nodiscard]] std::uint64_t lastEventID() const;
  std::shared_ptr<FSEventsMonitor> createMonitor(const IndexConfiguration& config);
  [[nodiscard]] std::unique_ptr<platform::ChangeStream> createStream(
      platform::ChangeStreamOptions options, platform::ChangeStream::Callback callback) const;
  void enqueue(std::vector<FSEventItem> events);  ///< on any thread
  tasks::Async<void> applyUpdates(std::stop_token stop);
  tasks::Async<void> update(std::vector<FSEventItem> events);
  tasks::Async<std::int64_t> countRows();
  /// A failed step of an update is a line in the log; the next update is another one.
  tasks::Async<void> attempt(tasks::Async<void> step) const;

  void publish(std::function<void(IndexStatus&)> change) const;

  const Surroundings surroundings_;
  std::shared_ptr<LiveIndexStatus> status_ = std::make_shared<LiveIndexStatus>();

  DatabaseManager database_;
  IndexFiller filler_;
  std::optional<std::int64_t> rows_;  ///< in the index; nothing before it was counted
  std::shared_ptr<FSEventsMonitor> fsMonitor_;
  std::optional<IndexConfiguration> currentConfig_;

  tasks::Task indexTask_;
  int rebuilds_ = 0;  ///< how many were begun; the newest is `indexTask_` until it has ended
  tasks::Task autoRebuildTask_;
  tasks::Task mergeTask_;
  bool isMergingOwed_ = false;
  /// Delivered and not yet applied, in order; two lists must not be applied at once, or the older
  /// could store what the newer has just found gone.
  PendingUpdates updates_;
  tasks::Task updateTask_;
  std::shared_ptr<platform::HandoverGate> gate_ = std::make_shared<platform::HandoverGate>();
  /// All that runs.
  tasks::TaskGroup tasks_;
};

}  // namespace zelnor
