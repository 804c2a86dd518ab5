#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "indexer/FileIndexActor.h"
#include "tasks/Task.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"
#include "tests/support/MemoryDefaultsStore.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::test {

/// An index actor with everything it needs, on a data folder of its own.
class Indexer {
 public:
  explicit Indexer(std::string dataFolder, bool followsChanges = false,
                   FileIndexActor::StreamFactory createStream = platform::createChangeStream)
      : actor_({.dataFolder = std::move(dataFolder),
                .background = pool_.executor(),
                .main = main_.executor(),
                .defaults = defaults_,
                .changes =
                    followsChanges ? std::optional(platform::ChangeStreamOptions{}) : std::nullopt,
                .log = [this](const std::string& line) { keep(line); },
                .createStream = std::move(createStream)}) {}
  Indexer(const Indexer&) = delete;
  Indexer& operator=(const Indexer&) = delete;
  ~Indexer() { main_.await(actor_.shutDown()); }

  FileIndexActor& actor() { return actor_; }
  MainThread& main() { return main_; }
  MemoryDefaultsStore& defaults() { return defaults_; }

  /// What the actor logged about rebuilds and failures.
  std::vector<std::string> log() {
    const std::scoped_lock lock(logMutex_);
    return log_;
  }

  /// Starts an operation that the test waits for later.
  template <class Start>
  tasks::Task spawn(Start start) {
    return tasks::Task::spawn(main_.executor(),
                              [start](const std::stop_token&) { return start(); });
  }

  /// Rebuilds the index from these roots and waits for it; answers the status afterwards.
  IndexStatus rebuild(const IndexConfiguration& config) {
    main_.await(actor_.rebuildIndex(config));
    main_.runReady();
    return actor_.status().value();
  }

 private:
  void keep(const std::string& line) {
    // How folders are followed depends on the machine.
    if (line.find("rebuild") == std::string::npos && line.find("error") == std::string::npos)
      return;
    const std::scoped_lock lock(logMutex_);
    log_.push_back(line);
  }

  std::mutex logMutex_;
  std::vector<std::string> log_;
  MainThread main_;
  MemoryDefaultsStore defaults_;
  tasks::ThreadPool pool_{3};
  FileIndexActor actor_;
};

inline IndexConfiguration configurationOf(const std::string& root) {
  IndexConfiguration config;
  config.includedPaths = {root};
  config.skipPackageContents = false;
  return config;
}

}  // namespace zelnor::test
