#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "indexer/FSEventsMonitor.h"
#include "indexer/FileSystemScanner.h"
#include "indexer/IndexConfiguration.h"
#include "indexer/IndexMaintainer.h"
#include "indexer/LiveIndexStatus.h"
#include "indexer/PendingUpdates.h"
#include "platform/ChangeStream.h"
#include "platform/DefaultsStore.h"
#include "platform/HandoverGate.h"
#include "store/DatabaseManager.h"
#include "tasks/Actor.h"
#include "tasks/Task.h"

namespace zelnor {

/// The writing side of the index: fills it from scratch and keeps it current.
///
/// Operations may be awaited from any thread. The owner awaits `shutDown()` before it destroys the
/// actor.
class FileIndexActor : public tasks::Actor, public IndexMaintainer {
 public:
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
  /// empty index is rebuilt; a rebuild that was killed halfway goes on, keeping what it has
  /// written. Otherwise the change stream catches up with what happened meanwhile. Throws what
  /// `rebuildIndex` throws.
  tasks::Async<void> resume(IndexConfiguration config);

  tasks::Async<void> startMonitoring(IndexConfiguration config) override;
  tasks::Async<void> stopMonitoring();

  /// Brings the rows of these paths up to date with the disk. What was delivered earlier must have
  /// ended.
  tasks::Async<void> handleFSEvents(std::vector<FSEventItem> events);
  /// Rebuilds the index because changes were lost; one such rebuild at a time.
  tasks::Async<void> scheduleAutomaticRebuild(std::string reason);

  /// Waits until the full-text table of the last rebuild has been merged; searches are right all
  /// the while.
  tasks::Async<void> settled();

  /// Stops whatever runs, in the middle of a statement if need be, and returns when nothing runs
  /// any more.
  tasks::Async<void> shutDown();

 private:
  /// Whether a rebuild starts from nothing or keeps what an unfinished one has written.
  enum class Start : std::uint8_t { empty, keeping };

  tasks::Async<void> replaceRebuild(IndexConfiguration config, Start start);
  tasks::Async<void> runRebuild(IndexConfiguration config, Start start, std::stop_token stop);
  tasks::Async<void> fill(const IndexConfiguration& config, Start start, std::stop_token stop);
  tasks::Async<bool> fillOnce(const IndexConfiguration& config, bool onlyLacking,
                              std::int64_t& written, std::stop_token stop);
  tasks::Async<void> mergeInSteps(std::stop_token stop);
  void startMerging();
  std::unique_ptr<FSEventsMonitor> createMonitor(const IndexConfiguration& config,
                                                 platform::ChangeStreamOptions options);
  void enqueue(std::vector<FSEventItem> events);
  tasks::Async<void> applyUpdates(std::stop_token stop);
  tasks::Async<void> update(std::vector<FSEventItem> events);
  /// A failed step of an update is a line in the log; the next update is another one.
  tasks::Async<void> attempt(tasks::Async<void> step) const;
  /// Called on the actor.
  [[nodiscard]] bool isRebuilding() const { return indexTask_ && !indexTask_.isDone(); }
  void publish(std::function<void(IndexStatus&)> change) const;

  const Surroundings surroundings_;
  std::shared_ptr<LiveIndexStatus> status_ = std::make_shared<LiveIndexStatus>();

  DatabaseManager database_;
  FileSystemScanner scanner_;
  std::unique_ptr<FSEventsMonitor> fsMonitor_;
  tasks::Task indexTask_;
  tasks::Task autoRebuildTask_;
  tasks::Task mergeTask_;
  /// Delivered and not yet applied, in order; two lists must not be applied at once, or the older
  /// could store what the newer has just found gone.
  PendingUpdates updates_;
  tasks::Task updateTask_;
  std::shared_ptr<platform::HandoverGate> gate_ = std::make_shared<platform::HandoverGate>();
  std::optional<IndexConfiguration> currentConfig_;
};

}  // namespace zelnor
