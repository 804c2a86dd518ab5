#include "indexer/FileIndexActor.h"

#include <chrono>
#include <exception>
#include <system_error>
#include <utility>
#include <vector>

#include <asio/post.hpp>

#include "indexer/BatchSpool.h"
#include "indexer/DatabaseIndexView.h"
#include "indexer/IncrementalUpdate.h"

namespace zelnor {

namespace {

constexpr auto kLastEventIDKey = "FSEventsLastEventID";
constexpr double kLatencySeconds = 0.5;

/// Changes at once that the store is told of before, so that it writes them faster.
constexpr std::size_t kBurst = 5'000;

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
tasks::Task drainInto(const std::shared_ptr<BatchSpool>& spool,
                      const std::shared_ptr<FileSystemScanner::Stream>& stream,
                      const tasks::Executor& executor) {
  return tasks::Task::spawn(executor, [spool, stream](std::stop_token) -> tasks::Async<void> {
    const SpoolFinisher finisher(*spool);
    while (auto batch = co_await stream->next()) spool->append(std::move(*batch));
  });
}

}  // namespace

FileIndexActor::FileIndexActor(const Surroundings& surroundings)
    : Actor(surroundings.background),
      surroundings_(surroundings),
      database_(surroundings.dataFolder, surroundings.background) {}

tasks::Async<void> FileIndexActor::rebuildIndex(IndexConfiguration config) {
  co_await replaceRebuild(std::move(config), Start::empty);
}

tasks::Async<void> FileIndexActor::resume(IndexConfiguration config) {
  co_await startMonitoring(config);
  std::int64_t total = 0;
  try {
    total = co_await database_.totalFileCount();
  } catch (const DatabaseError&) {
    // An index that cannot be counted is made anew.
  }
  const bool isUnfinished = co_await database_.isBulkLoadUnfinished();
  publish([total](IndexStatus& status) { status.totalFiles = total; });
  if (total == 0 || isUnfinished) {
    co_await replaceRebuild(std::move(config), total == 0 ? Start::empty : Start::keeping);
  }
}

tasks::Async<void> FileIndexActor::replaceRebuild(IndexConfiguration config, Start start) {
  const auto task = co_await onActor([&] {
    indexTask_.cancel();
    mergeTask_.cancel();
    indexTask_ =
        tasks::Task::spawn(strand(),
                           [this, config = std::move(config), start,
                            previous = indexTask_](std::stop_token stop) -> tasks::Async<void> {
                             // The older one stops at its next batch; two must not fill the index
                             // at once.
                             try {
                               co_await previous.wait();
                             } catch (...) {
                               // Its own caller is told.
                             }
                             co_await runRebuild(config, start, std::move(stop));
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

tasks::Async<void> FileIndexActor::runRebuild(IndexConfiguration config, Start start,
                                              std::stop_token stop) {
  publish([](IndexStatus& status) { status.state = IndexStatus::State::indexing(); });
  try {
    surroundings_.defaults.remove(kLastEventIDKey);
    co_await fill(config, start, stop);
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
  startMerging();
}

tasks::Async<void> FileIndexActor::fill(const IndexConfiguration& config, Start start,
                                        std::stop_token stop) {
  if (stop.stop_requested()) throw RebuildCancelled{};
  if (start == Start::empty) co_await database_.clearAll();
  co_await database_.beginBulkLoad();
  std::int64_t written = start == Start::empty ? 0 : co_await database_.totalFileCount();
  bool onlyLacking = start == Start::keeping;
  while (!co_await fillOnce(config, onlyLacking, written, stop)) onlyLacking = true;
  co_await database_.endBulkLoad();
}

/// One pass of the scan; answers whether it lost nothing.
tasks::Async<bool> FileIndexActor::fillOnce(const IndexConfiguration& config, bool onlyLacking,
                                            std::int64_t& written, std::stop_token stop) {
  const auto scan =
      scanner_.scan(config.includedPaths, config, [](std::int64_t) {}, surroundings_.background);
  const std::stop_callback stopWalk(stop, [walk = scan.walk] { walk.cancel(); });
  const auto spool = std::make_shared<BatchSpool>(surroundings_.dataFolder);
  const auto drain = drainInto(spool, scan.stream, surroundings_.background);
  const auto before = written;
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
  // Another pass would lose the same batches again.
  if (spool->lost() > 0 && written == before) {
    throw std::system_error(std::make_error_code(std::errc::no_space_on_device),
                            surroundings_.dataFolder);
  }
  co_return scan.stream->discarded() == 0 && spool->lost() == 0;
}

void FileIndexActor::startMerging() {
  mergeTask_.cancel();
  mergeTask_ = tasks::Task::spawn(
      strand(), [this](std::stop_token stop) { return mergeInSteps(std::move(stop)); });
}

tasks::Async<void> FileIndexActor::mergeInSteps(std::stop_token stop) {
  // GCC 12 miscompiles an await behind && in a loop's condition.
  while (!stop.stop_requested()) {
    const bool more = co_await database_.mergeStep();
    if (!more) co_return;
  }
}

tasks::Async<void> FileIndexActor::startMonitoring(IndexConfiguration config) {
  co_await onActor([&] {
    currentConfig_ = config;
    fsMonitor_.reset();
    const auto& changes = surroundings_.changes;
    if (!changes) return;
    fsMonitor_ = createMonitor(config, *changes);
    const auto last = surroundings_.defaults.get<std::uint64_t>(kLastEventIDKey).value_or(0);
    fsMonitor_->start(config.includedPaths,
                      last != 0 ? last : platform::kFSEventStreamEventIdSinceNow);
  });
}

tasks::Async<void> FileIndexActor::stopMonitoring() {
  co_await onActor([&] { fsMonitor_.reset(); });
}

std::unique_ptr<FSEventsMonitor> FileIndexActor::createMonitor(
    const IndexConfiguration& config, platform::ChangeStreamOptions options) {
  options.scope = {.excludedPrefixes = config.excludedPaths,
                   .skipsHidden = config.skipHiddenFiles,
                   .skipsPackageContents = config.skipPackageContents,
                   .skipsLinks = config.skipSymlinks};
  options.index = std::make_shared<DatabaseIndexView>(surroundings_.dataFolder, gate_);
  options.stateFolder = surroundings_.dataFolder;
  options.ownPaths.push_back(surroundings_.dataFolder);
  options.log = surroundings_.log;
  // Reactions run on the monitor's own thread; none runs after the monitor has stopped.
  auto monitor = std::make_unique<FSEventsMonitor>(
      kLatencySeconds, [this](std::vector<FSEventItem> items) { enqueue(std::move(items)); },
      [options = std::move(options)](std::vector<std::string> paths, std::uint64_t sinceWhen,
                                     double latency, std::uint32_t flags,
                                     platform::ChangeStream::Callback callback) {
        auto complete = options;
        complete.roots = std::move(paths);
        complete.sinceWhen = sinceWhen;
        complete.latency = std::chrono::duration<double>(latency);
        complete.flags = flags;
        return platform::createChangeStream(std::move(complete), std::move(callback));
      });
  monitor->onRescanNeeded = [this](const FSEventRescanRequest& request) {
    tasks::Task::spawn(strand(),
                       [this, reason = request.reason](std::stop_token) -> tasks::Async<void> {
                         co_await scheduleAutomaticRebuild(reason);
                       });
  };
  monitor->onLatestEventID = [&defaults = surroundings_.defaults](std::uint64_t identifier) {
    defaults.set(kLastEventIDKey, identifier);
  };
  return monitor;
}

void FileIndexActor::enqueue(std::vector<FSEventItem> events) {
  gate_->handOver();
  asio::post(strand(), [this, events = std::move(events)]() mutable {
    updates_.push(std::move(events));
    if (updateTask_ && !updateTask_.isDone()) return;
    updateTask_ = tasks::Task::spawn(
        strand(), [this](std::stop_token stop) { return applyUpdates(std::move(stop)); });
  });
}

tasks::Async<void> FileIndexActor::applyUpdates(std::stop_token stop) {
  bool isBurst = false;
  while (!updates_.isEmpty()) {
    auto update = updates_.take();
    if (!isBurst && update.events.size() >= kBurst && !isRebuilding()) {
      isBurst = true;
      mergeTask_.cancel();
      co_await attempt(database_.beginBurst());
    }
    if (!stop.stop_requested()) co_await handleFSEvents(std::move(update.events));
    for (; update.lists > 0; --update.lists) gate_->applied();
    if (!isBurst || !updates_.isEmpty()) continue;
    // Inside the loop: what is delivered meanwhile starts no task of its own.
    isBurst = false;
    if (isRebuilding()) continue;  // which defers merging too, and resumes it itself
    co_await attempt(database_.endBurst());
    if (!stop.stop_requested()) startMerging();
  }
}

tasks::Async<void> FileIndexActor::handleFSEvents(std::vector<FSEventItem> events) {
  co_await attempt(update(std::move(events)));
}

tasks::Async<void> FileIndexActor::update(std::vector<FSEventItem> events) {
  auto changes = co_await onActor([&] { return planIncrementalUpdate(events); });
  const bool hasUpserts = !changes.upserts.empty();
  // What is in a new folder is often reported twice, by its own event and by the folder's listing.
  changes.upserts = co_await database_.differing(std::move(changes.upserts));
  changes = co_await database_.moveRows(std::move(changes));
  if (!changes.removals.empty()) {
    co_await database_.deleteByPaths(std::move(changes.removals));
    // The status stays; what shows files is told that there are fewer.
    publish([](IndexStatus&) {});
  }
  if (!hasUpserts) co_return;
  co_await database_.batchInsert(std::move(changes.upserts));
  const auto total = co_await database_.totalFileCount();
  publish([total](IndexStatus& status) {
    status.state = IndexStatus::State::idle();
    status.totalFiles = total;
  });
}

tasks::Async<void> FileIndexActor::attempt(tasks::Async<void> step) const {
  try {
    co_await std::move(step);
  } catch (const std::exception& error) {
    surroundings_.log(std::string("[FSEvents] Incremental update error: ") + error.what());
  }
}

tasks::Async<void> FileIndexActor::scheduleAutomaticRebuild(std::string reason) {
  co_await onActor([&] {
    if (autoRebuildTask_ && !autoRebuildTask_.isDone()) return;
    if (indexTask_) {
      surroundings_.log(
          "[FSEvents] Full rescan requested while indexing; current rebuild will refresh the "
          "index.");
      return;
    }
    if (!currentConfig_) return;
    autoRebuildTask_ = tasks::Task::spawn(
        strand(),
        [this, reason = std::move(reason),
         config = *currentConfig_](std::stop_token) -> tasks::Async<void> {
          surroundings_.log("[FSEvents] Triggering automatic full rebuild: " + reason);
          try {
            co_await rebuildIndex(config);
          } catch (const std::exception& error) {
            surroundings_.log(std::string("[FSEvents] Automatic rebuild failed: ") + error.what());
          }
        });
  });
}

tasks::Async<void> FileIndexActor::settled() {
  const auto task = co_await onActor([&] { return mergeTask_; });
  co_await task.wait();
}

tasks::Async<void> FileIndexActor::shutDown() {
  const auto running = co_await onActor([&] {
    fsMonitor_.reset();
    std::vector tasks{indexTask_, autoRebuildTask_, mergeTask_, updateTask_};
    for (const auto& task : tasks) task.cancel();
    return tasks;
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
  asio::post(surroundings_.main, [status = std::weak_ptr(status_), change = std::move(change)] {
    if (const auto live = status.lock()) live->update(change);
  });
}

}  // namespace zelnor
