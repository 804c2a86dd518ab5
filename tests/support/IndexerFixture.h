#pragma once

#include <memory>
#include <string>

#include "indexer/FileIndexActor.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"
#include "tests/support/MemoryDefaultsStore.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::test {

/// An index actor with everything it needs, on a data folder of its own.
class Indexer {
 public:
  explicit Indexer(std::string dataFolder)
      : actor_({.dataFolder = std::move(dataFolder),
                .background = pool_.executor(),
                .main = main_.executor(),
                .defaults = defaults_}) {}
  Indexer(const Indexer&) = delete;
  Indexer& operator=(const Indexer&) = delete;
  ~Indexer() { main_.await(actor_.shutDown()); }

  FileIndexActor& actor() { return actor_; }
  MainThread& main() { return main_; }
  MemoryDefaultsStore& defaults() { return defaults_; }

  /// Rebuilds the index from these roots and waits for it; answers the status afterwards.
  IndexStatus rebuild(const IndexConfiguration& config) {
    main_.await(actor_.rebuildIndex(config));
    main_.runReady();
    return actor_.status().value();
  }

 private:
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
