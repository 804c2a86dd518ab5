#include "indexer/FileIndexActor.h"

#include <asio/post.hpp>
#include <chrono>
#include <exception>
#include <utility>
#include <vector>

#include "indexer/BatchSpool.h"

namespace zelnor {

namespace {

constexpr auto kLastEventIdKey = "FSEventsLastEventID";

/// Thrown inside a rebuild when it was asked to stop; never leaves it.
struct RebuildCancelled : std::exception {};

/// Ends the spool however the draining ends, so that its reader does not wait for ever.
class SpoolFinisher {
 public:
  explicit SpoolFinisher(BatchSpool& spool) : spool_(spool) {}
  SpoolFinisher(const SpoolFinisher&) = delete;
  SpoolFinisher& operator=(const SpoolFinisher&) = delete;
  ~SpoolFinisher() { spool_.finish(); }

 private:
  BatchSpool& spool_;
};

/// Takes the batches off the scan's stream as they come.
tasks::Task drainInto(std::shared_ptr<BatchSpool> spool, std::shared_ptr<FileSystemScanner::Stream> stream,
                      const tasks::Executor& executor) {
  return tasks::Task::spawn(executor, [spool, stream](std::stop_token) -> tasks::Async<void> {
    const SpoolFinisher finisher(*spool);
    while (auto batch = co_await stream->next()) spool->append(std::move(*batch));
  });
}

}  // namespace

FileIndexActor::FileIndexActor(const Surroundings& surroundings)
    : Actor(surroundings.background),
      dataFolder_(surroundings.dataFolder),
      background_(surroundings.background),
      main_(surroundings.main),
      defaults_(surroundings.defaults),
      database_(dataFolder_, background_) {}

tasks::Async<void> FileIndexActor::rebuildIndex(IndexConfiguration config) {
  const auto task = co_await onActor([&] {
    indexTask_.cancel();
    mergeTask_.cancel();
    indexTask_ = tasks::Task::spawn(strand(), [this, config = std::move(config), previous = indexTask_](
                                                  std::stop_token stop) -> tasks::Async<void> {
      // The older one stops at its next batch; two must not fill the index at once.
      try {
        co_await previous.wait();
      } catch (...) {
        // Its own caller is told.
      }
      co_await runRebuild(config, std::move(stop));
    });
    return indexTask_;
  });
  std::exception_ptr error;
  try {
    co_await task.wait();
  } catch (...) {
    error = std::current_exception();
  }
  co_await onActor([&] {
    if (indexTask_ == task) indexTask_ = {};
  });
  if (error) std::rethrow_exception(error);
}

tasks::Async<void> FileIndexActor::runRebuild(IndexConfiguration config, std::stop_token stop) {
  publish([](IndexStatus& status) { status.state = IndexStatus::State::indexing(); });
  try {
    defaults_.remove(kLastEventIdKey);
    co_await fill(config, stop);
    const auto total = co_await database_.totalFileCount();
    publish([total, now = std::chrono::system_clock::now()](IndexStatus& status) {
      status.state = IndexStatus::State::idle();
      status.totalFiles = total;
      status.processedFiles = total;
      status.lastIndexDate = now;
    });
  } catch (const std::exception& error) {
    if (stop.stop_requested()) {
      publish([](IndexStatus& status) { status.state = IndexStatus::State::idle(); });
      co_return;
    }
    publish([what = std::string(error.what())](IndexStatus& status) {
      status.state = IndexStatus::State::error(what);
    });
    throw;
  }
  co_await startMonitoring(std::move(config));
  mergeTask_ = tasks::Task::spawn(strand(), [this](std::stop_token s) { return mergeInSteps(std::move(s)); });
}

tasks::Async<void> FileIndexActor::fill(const IndexConfiguration& config, std::stop_token stop) {
  if (stop.stop_requested()) throw RebuildCancelled{};
  co_await database_.clearAll();
  co_await database_.beginBulkLoad();
  std::int64_t written = 0;
  bool onlyLacking = false;
  while (!co_await fillOnce(config, onlyLacking, written, stop)) onlyLacking = true;
  co_await database_.endBulkLoad();
}

/// One pass of the scan; answers whether it lost nothing.
tasks::Async<bool> FileIndexActor::fillOnce(const IndexConfiguration& config, bool onlyLacking,
                                            std::int64_t& written, std::stop_token stop) {
  const auto scan = scanner_.scan(config.includedPaths, config, [](std::int64_t) {}, background_);
  const std::stop_callback stopWalk(stop, [walk = scan.walk] { walk.cancel(); });
  const auto spool = std::make_shared<BatchSpool>(dataFolder_);
  const auto drain = drainInto(spool, scan.stream, background_);
  while (auto batch = co_await spool->next()) {
    if (onlyLacking) batch = co_await database_.lacking(std::move(*batch));
    if (stop.stop_requested()) throw RebuildCancelled{};
    written += static_cast<std::int64_t>(batch->size());
    co_await database_.batchInsert(std::move(*batch));
    publish([written](IndexStatus& status) {
      status.state = IndexStatus::State::indexing();
      status.processedFiles = written;
    });
  }
  co_await drain.wait();
  if (stop.stop_requested()) throw RebuildCancelled{};
  co_return scan.stream->discarded() == 0 && spool->lost() == 0;
}

tasks::Async<void> FileIndexActor::mergeInSteps(std::stop_token stop) {
  // GCC 12 miscompiles an await behind && in a loop's condition.
  while (!stop.stop_requested()) {
    const bool more = co_await database_.mergeStep();
    if (!more) co_return;
  }
}

tasks::Async<void> FileIndexActor::startMonitoring(IndexConfiguration config) {
  co_await onActor([&] { currentConfig_ = std::move(config); });
}

tasks::Async<void> FileIndexActor::stopMonitoring() { co_return; }

tasks::Async<void> FileIndexActor::settled() {
  const auto task = co_await onActor([&] { return mergeTask_; });
  co_await task.wait();
}

tasks::Async<void> FileIndexActor::shutDown() {
  const auto running = co_await onActor([&] {
    for (const auto& task : {indexTask_, mergeTask_}) task.cancel();
    return std::vector{indexTask_, mergeTask_};
  });
  for (const auto& task : running) {
    try {
      database_.interrupt();
      co_await task.wait();
    } catch (...) {
      // Told to whoever started it.
    }
  }
}

void FileIndexActor::publish(std::function<void(IndexStatus&)> change) const {
  asio::post(main_, [status = std::weak_ptr(status_), change = std::move(change)] {
    if (const auto live = status.lock()) live->update(change);
  });
}

}  // namespace zelnor
