#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "indexer/FileSystemScanner.h"
#include "indexer/IndexConfiguration.h"
#include "indexer/LiveIndexStatus.h"
#include "platform/DefaultsStore.h"
#include "store/DatabaseManager.h"
#include "tasks/Actor.h"
#include "tasks/Task.h"

namespace zelnor {

/// The writing side of the index: fills it from scratch and keeps it current.
///
/// Operations may be awaited from any thread. The owner awaits `shutDown()` before it destroys the actor.
class FileIndexActor : public tasks::Actor {
 public:
  /// What the actor needs of the program; all of it outlives the actor.
  struct Surroundings {
    std::string dataFolder;          ///< holds the index
    tasks::Executor background;      ///< where blocking work runs, at least three threads
    tasks::Executor main;            ///< where the status is written
    platform::DefaultsStore& defaults;
  };

  /// Opens the index for writing. Blocks: not for the main thread. Throws DatabaseError, or
  /// std::filesystem::filesystem_error if the data folder cannot be created.
  explicit FileIndexActor(const Surroundings& surroundings);

  /// The actor's connection to the index.
  DatabaseManager& sharedDatabase() { return database_; }
  /// What the actor is doing. Main thread only.
  LiveIndexStatus& status() { return *status_; }

  /// Replaces the index with a fresh scan of `config`; returns when that rebuild has ended. A newer rebuild cancels an
  /// older one, which then ends without an error. Throws what stopped the rebuild, which the status shows too.
  tasks::Async<void> rebuildIndex(IndexConfiguration config);

  /// Remembers the configuration whose roots are to be followed.
  tasks::Async<void> startMonitoring(IndexConfiguration config);
  tasks::Async<void> stopMonitoring();

  /// Waits until the full-text table of the last rebuild has been merged; searches are right all the while.
  tasks::Async<void> settled();

  /// Stops whatever runs, in the middle of a statement if need be, and returns when nothing runs any more.
  tasks::Async<void> shutDown();

 private:
  tasks::Async<void> runRebuild(IndexConfiguration config, std::stop_token stop);
  tasks::Async<void> fill(const IndexConfiguration& config, std::stop_token stop);
  tasks::Async<bool> fillOnce(const IndexConfiguration& config, bool onlyLacking, std::int64_t& written, std::stop_token stop);
  tasks::Async<void> mergeInSteps(std::stop_token stop);
  void publish(std::function<void(IndexStatus&)> change) const;

  std::string dataFolder_;
  tasks::Executor background_;
  tasks::Executor main_;
  platform::DefaultsStore& defaults_;
  std::shared_ptr<LiveIndexStatus> status_ = std::make_shared<LiveIndexStatus>();

  DatabaseManager database_;
  FileSystemScanner scanner_;
  tasks::Task indexTask_;
  tasks::Task mergeTask_;
  std::optional<IndexConfiguration> currentConfig_;
};

}  // namespace zelnor
