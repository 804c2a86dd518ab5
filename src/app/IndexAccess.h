#pragma once

#include <memory>
#include <optional>

#include "indexer/FileIndexActor.h"
#include "platform/FileLock.h"
#include "search/SearchEngine.h"
#include "store/DatabaseManager.h"
#include "tasks/ThreadPool.h"

namespace zelnor::app {

/// The index as this process has it open: always to search, and to write unless another process
/// does.
class IndexAccess {
 public:
  /// Opens the index, and makes it if this process is the one that writes; searches are answered on
  /// `interactive`. Blocks. Throws DatabaseError, or std::system_error if the data folder cannot be
  /// used.
  IndexAccess(const FileIndexActor::Surroundings& surroundings, const tasks::Executor& interactive);

  /// The writing side; nothing if another process holds it.
  FileIndexActor* indexer() { return indexer_ ? &*indexer_ : nullptr; }
  SearchEngine& engine() { return engine_; }
  /// Makes the search that runs now, if any, end early.
  void interruptSearch() { database_.interrupt(); }

 private:
  std::optional<platform::FileLock> writerLock_;  // held for as long as the index is open
  std::optional<FileIndexActor> indexer_;
  DatabaseManager database_;
  tasks::ThreadPool matchers_;  // threads of their own: a long search leaves timers theirs
  SearchEngine engine_;
};

}  // namespace zelnor::app
