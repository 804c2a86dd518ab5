#include "app/IndexAccess.h"

#include <stdexcept>
#include <utility>

#include "platform/FileLock.h"
#include "platform/UserFolders.h"
#include "store/DatabaseManager.h"
#include "store/IndexReader.h"
#include "tasks/RunOn.h"
#include "tasks/ThreadPool.h"

namespace zelnor::app {

struct IndexAccess::Writer {
  Writer(platform::FileLock itsLock, const FileIndexActor::Surroundings& surroundings)
      : lock(std::move(itsLock)), indexer(surroundings) {}

  platform::FileLock lock;  // goes last
  FileIndexActor indexer;
};

struct IndexAccess::Searcher {
  Searcher(const std::string& folder, const tasks::Executor& executor)
      : database(folder, executor, DatabaseManager::Access::readOnly) {}

  DatabaseManager database;
  tasks::ThreadPool matchers{tasks::processorCount()};  // a long search leaves timers theirs
  SearchEngine engine{database, matchers.executor()};
};

IndexAccess::IndexAccess(FileIndexActor::Surroundings surroundings, tasks::Executor interactive,
                         tasks::Clock& clock)
    : surroundings_(std::move(surroundings)), interactive_(std::move(interactive)), clock_(clock) {}

IndexAccess::~IndexAccess() = default;

std::string IndexAccess::lockPath() const { return surroundings_.dataFolder + "/index.lock"; }

tasks::Async<void> IndexAccess::open(std::stop_token stop) {
  while (!stop.stop_requested()) {
    if (!writer_) co_await openToWriteIfFree();
    co_await openToSearchIfThere();
    if (isOpen()) co_return;
    co_await clock_.sleep(kRetryPause, stop);
  }
}

tasks::Async<void> IndexAccess::openToWriteIfFree() {
  const auto openIfFree = [this]() -> std::unique_ptr<Writer> {
    platform::createPrivateFolder(surroundings_.dataFolder);
    auto lock = platform::FileLock::tryAcquire(lockPath());
    return lock ? std::make_unique<Writer>(std::move(*lock), surroundings_) : nullptr;
  };
  writer_ = co_await tasks::runOn(interactive_, openIfFree);
}

tasks::Async<void> IndexAccess::openToSearchIfThere() {
  const auto openToSearch = [this] {
    // A connection reads nothing before its first statement, which fails while there is no table.
    IndexReader(surroundings_.dataFolder).recordsFrom(/*path=*/{}, /*limit=*/1);
    return std::make_unique<Searcher>(surroundings_.dataFolder, interactive_);
  };
  try {
    searcher_ = co_await tasks::runOn(interactive_, openToSearch);
  } catch (const DatabaseError&) {
    // Whoever writes the index either gets it into order or fails, and lets go of it.
    if (writer_) throw;
  }
}

tasks::Async<void> IndexAccess::takeOver(std::stop_token stop) {
  if (writer_) co_return;
  // A thread of its own, because it may wait for days.
  const tasks::ThreadPool waiting(/*threads=*/1);
  const auto wait = [&] { return platform::FileLock::acquireWhenFree(lockPath(), stop); };
  const auto executor = waiting.executor();
  auto lock = co_await tasks::runOn(executor, wait);
  if (!lock || stop.stop_requested()) co_return;
  const auto openToWrite = [&] {
    return std::make_unique<Writer>(std::move(*lock), surroundings_);
  };
  writer_ = co_await tasks::runOn(interactive_, openToWrite);
}

FileIndexActor* IndexAccess::indexer() { return writer_ ? &writer_->indexer : nullptr; }

tasks::Async<void> IndexAccess::rebuildIndex(IndexConfiguration config) {
  if (!writer_) throw std::runtime_error("另一个进程正在维护索引，此窗口只能搜索");
  co_await writer_->indexer.rebuildIndex(std::move(config));
}

tasks::Async<void> IndexAccess::startMonitoring(IndexConfiguration config) {
  if (writer_) co_await writer_->indexer.startMonitoring(std::move(config));
}

SearchEngine& IndexAccess::engine() { return searcher_->engine; }

tasks::Async<void> IndexAccess::stop() {
  if (searcher_) searcher_->database.setInterrupted(true);
  if (writer_) co_await writer_->indexer.shutDown();
}

tasks::Async<void> IndexAccess::close() {
  co_await stop();
  // Closing a database may have to write.
  const auto close = [this] {
    searcher_.reset();
    writer_.reset();
  };
  co_await tasks::runOn(interactive_, close);
}

}  // namespace zelnor::app
