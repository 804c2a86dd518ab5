#include "indexer/FileIndexActor.h"

#include <chrono>
#include <exception>
#include <utility>
#include <vector>

#include <asio/post.hpp>

#include "indexer/DatabaseIndexView.h"
#include "indexer/IncrementalUpdate.h"

namespace zelnor {

namespace {

constexpr auto kLastEventIDKey = "FSEventsLastEventID";
constexpr double kLatencySeconds = 0.5;

/// Changes at once that the store is told of before, so that it writes them faster.
constexpr std::size_t kBurst = 5'000;

std::string descriptionOf(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const std::exception& error) {
    return error.what();
  }
}

}  // namespace

FileIndexActor::FileIndexActor(const Surroundings& surroundings)
    : Actor(surroundings.background),
      surroundings_(surroundings),
      database_(surroundings.dataFolder, surroundings.background),
      filler_({.database = database_,
               .folder = surroundings.dataFolder,
               .background = surroundings.background,
               .emptied = [this] { rows_ = 0; },
               .written =
                   [this](std::int64_t records, const RowDifference& difference) {
                     if (rows_) *rows_ += difference.growth();
                     publish([records](IndexStatus& status) {
                       status.state = IndexStatus::State::indexing();
                       status.processedFiles = records;
                     });
                   }}),
      tasks_(strand()) {}

// Operations: each is a task of the actor, so that `shutDown` knows it.

tasks::Async<void> FileIndexActor::rebuildIndex(IndexConfiguration config) {
  return perform([this, config = std::move(config)](const std::stop_token&) {
    return replaceRebuild(config, Start::empty);
  });
}

tasks::Async<void> FileIndexActor::resume(IndexConfiguration config) {
  return perform([this, config = std::move(config)](std::stop_token stop) {
    return goOn(config, std::move(stop));
  });
}

tasks::Async<void> FileIndexActor::startMonitoring(IndexConfiguration config) {
  return perform([this, config = std::move(config)](const std::stop_token&) -> tasks::Async<void> {
    monitor(config);
    co_return;
  });
}

tasks::Async<void> FileIndexActor::stopMonitoring() {
  return perform([this](const std::stop_token&) -> tasks::Async<void> {
    fsMonitor_.reset();
    co_return;
  });
}

tasks::Async<void> FileIndexActor::handleFSEvents(std::vector<FSEventItem> events) {
  return perform([this, events = std::move(events)](const std::stop_token&) {
    return attempt(update(events));
  });
}

tasks::Async<void> FileIndexActor::scheduleAutomaticRebuild(std::string reason) {
  return perform([this, reason = std::move(reason)](const std::stop_token&) -> tasks::Async<void> {
    requestRebuild(reason);
    co_return;
  });
}

tasks::Async<void> FileIndexActor::perform(Operation operation) {
  const auto untilClosed = [operation =
                                std::move(operation)](std::stop_token stop) -> tasks::Async<void> {
    try {
      co_await operation(stop);
    } catch (const std::exception&) {
      // Whoever breaks it off need not be told that it was.
      if (!stop.stop_requested()) throw;
    }
  };
  const auto task = co_await onActor([&] { return tasks_.spawn(untilClosed); });
  // From here on the actor may go away.
  co_await task.wait();
}

tasks::Async<void> FileIndexActor::settled() {
  const auto task = co_await onActor([&] { return mergeTask_; });
  co_await task.wait();
}

tasks::Async<void> FileIndexActor::shutDown() {
  co_await onActor([&] {
    tasks_.close();
    database_.setInterrupted(true);
    fsMonitor_.reset();
  });
  // What the monitor delivered last came to the actor before this.
  co_await onActor([&] { return tasks_.wait(); });
  database_.setInterrupted(false);
}

// Launch and rebuilds.

tasks::Async<void> FileIndexActor::goOn(IndexConfiguration config, std::stop_token stop) {
  currentConfig_ = config;
  const auto rebuild = co_await neededRebuild(config);
  const bool isMergingDeferred = co_await database_.isMergingDeferred();
  isMergingOwed_ = isMergingOwed_ || isMergingDeferred;
  publish([rows = rows_.value_or(0)](IndexStatus& status) { status.totalFiles = rows; });
  std::exception_ptr failure;
  try {
    if (rebuild) co_await replaceRebuild(config, *rebuild);
  } catch (...) {
    failure = std::current_exception();
  }
  if (stop.stop_requested()) co_return;
  if (!rebuild || failure) monitor(config);
  startMerging();
  if (failure) std::rethrow_exception(failure);
}

tasks::Async<std::optional<IndexFiller::Start>> FileIndexActor::neededRebuild(
    const IndexConfiguration& config) {
  try {
    const auto rows = co_await countRows();
    if (rows == 0) co_return Start::empty;
  } catch (const DatabaseError&) {
    co_return Start::empty;  // an index that cannot be counted is made anew
  }
  const auto unfinished = co_await database_.unfinishedBulkLoad();
  if (!unfinished) co_return std::nullopt;
  const bool canGoOn = co_await filler_.canGoOn(config);
  co_return canGoOn ? Start::keeping : Start::empty;
}

tasks::Async<void> FileIndexActor::replaceRebuild(IndexConfiguration config, Start start) {
  indexTask_.cancel();
  mergeTask_.cancel();
  const auto task = tasks_.spawn(
      [this, config = std::move(config), start, number = ++rebuilds_, rebuild = indexTask_,
       merging = mergeTask_](std::stop_token stop) -> tasks::Async<void> {
        // The older one stops at its next batch; two must not fill the index at once.
        co_await rebuild.ended();
        co_await merging.ended();
        std::exception_ptr failure;
        try {
          co_await runRebuild(config, start, std::move(stop));
        } catch (...) {
          failure = std::current_exception();
        }
        rebuildEnded(number);
        if (failure) std::rethrow_exception(failure);
      });
  indexTask_ = task;
  co_await task.wait();
}

tasks::Async<void> FileIndexActor::runRebuild(IndexConfiguration config, Start start,
                                              std::stop_token stop) {
  publish([](IndexStatus& status) { status.state = IndexStatus::State::indexing(); });
  isMergingOwed_ = true;
  auto listening = start == Start::empty ? listen(config) : nullptr;
  std::int64_t rows = 0;
  std::exception_ptr failure;
  try {
    surroundings_.defaults.remove(kLastEventIDKey);
    co_await filler_.fill(config, start, listening, stop);
    rows = co_await countRows();
  } catch (...) {
    failure = std::current_exception();
  }
  if (stop.stop_requested()) {
    publish([](IndexStatus& status) { status.state = IndexStatus::State::idle(); });
    co_return;
  }
  if (failure) {
    publish([what = descriptionOf(failure)](IndexStatus& status) {
      status.state = IndexStatus::State::error(what);
    });
    std::rethrow_exception(failure);
  }
  publish([rows, now = std::chrono::system_clock::now()](IndexStatus& status) {
    status.state = IndexStatus::State::idle();
    status.totalFiles = rows;
    status.processedFiles = rows;
    status.lastIndexDate = now;
  });
  monitor(config, std::move(listening));
}

/// Before anybody who waits for the rebuild is told: what is asked for from now on, it has not
/// seen.
void FileIndexActor::rebuildEnded(int number) {
  if (number != rebuilds_) return;
  indexTask_ = {};
  autoRebuildTask_ = {};
  startMerging();
}

void FileIndexActor::requestRebuild(const std::string& reason) {
  if (autoRebuildTask_ && !autoRebuildTask_.isDone()) return;
  if (isRebuilding()) {
    surroundings_.log(
        "[FSEvents] Full rescan requested while indexing; current rebuild will refresh the "
        "index.");
    return;
  }
  if (!currentConfig_) return;
  autoRebuildTask_ = tasks_.spawn([this, reason, config = *currentConfig_](const std::stop_token&) {
    return rebuildAutomatically(reason, config);
  });
}

tasks::Async<void> FileIndexActor::rebuildAutomatically(std::string reason,
                                                        IndexConfiguration config) {
  surroundings_.log("[FSEvents] Triggering automatic full rebuild: " + reason);
  try {
    co_await replaceRebuild(std::move(config), Start::empty);
  } catch (const std::exception& error) {
    surroundings_.log(std::string("[FSEvents] Automatic rebuild failed: ") + error.what());
  }
}

// Merging: after whatever defers it, and again after every update until it has succeeded.

void FileIndexActor::startMerging() {
  const bool isMerging = mergeTask_ && !mergeTask_.isDone() && !mergeTask_.isCancelled();
  if (!isMergingOwed_ || isMerging || isRebuilding()) return;
  mergeTask_ = tasks_.spawn([this](std::stop_token stop) { return mergeInSteps(std::move(stop)); });
}

tasks::Async<void> FileIndexActor::mergeInSteps(std::stop_token stop) {
  // GCC 12 miscompiles an await behind && in a loop's condition.
  while (!stop.stop_requested()) {
    const bool more = co_await database_.mergeStep();
    if (more || stop.stop_requested()) continue;
    isMergingOwed_ = false;
    co_return;
  }
}

// Monitoring.

/// Follows the roots of `config` with a monitor that has listened to the walk through them, or else
/// walks them itself.
void FileIndexActor::monitor(const IndexConfiguration& config,
                             std::shared_ptr<FSEventsMonitor> prepared) {
  currentConfig_ = config;
  fsMonitor_.reset();
  if (!surroundings_.changes || tasks_.isClosed()) return;
  fsMonitor_ = prepared ? std::move(prepared) : createMonitor(config);
  fsMonitor_->start(config.includedPaths, lastEventID());
}

/// A monitor for a rebuild to tell of what it walks through, so that nobody need walk there again;
/// until the rebuild has succeeded the older monitor goes on. Null: there can be none.
std::shared_ptr<FSEventsMonitor> FileIndexActor::listen(const IndexConfiguration& config) {
  if (!surroundings_.changes) return nullptr;
  auto monitor = createMonitor(config);
  return monitor->listen(config.includedPaths, lastEventID()) ? monitor : nullptr;
}

std::uint64_t FileIndexActor::lastEventID() const {
  const auto last = surroundings_.defaults.get<std::uint64_t>(kLastEventIDKey).value_or(0);
  return last != 0 ? last : platform::kFSEventStreamEventIdSinceNow;
}

std::shared_ptr<FSEventsMonitor> FileIndexActor::createMonitor(const IndexConfiguration& config) {
  auto options = surroundings_.changes.value_or(platform::ChangeStreamOptions{});
  options.scope = {.excludedPrefixes = config.excludedPaths,
                   .skipsHidden = config.skipHiddenFiles,
                   .skipsPackageContents = config.skipPackageContents,
                   .skipsLinks = config.skipSymlinks};
  options.stateFolder = surroundings_.dataFolder;
  options.ownPaths.push_back(surroundings_.dataFolder);
  options.log = surroundings_.log;
  options.onFollowing = [this](const platform::FollowCount& count) {
    publish([count](IndexStatus& status) { status.followed = count; });
  };
  // Reactions run on the monitor's own thread; none runs after the monitor has stopped.
  auto monitor = std::make_shared<FSEventsMonitor>(
      kLatencySeconds, [this](std::vector<FSEventItem> items) { enqueue(std::move(items)); },
      [this, options = std::move(options)](std::vector<std::string> paths, std::uint64_t sinceWhen,
                                           double latency, std::uint32_t flags,
                                           platform::ChangeStream::Callback callback) {
        auto complete = options;
        complete.roots = std::move(paths);
        complete.sinceWhen = sinceWhen;
        complete.latency = std::chrono::duration<double>(latency);
        complete.flags = flags;
        return createStream(std::move(complete), std::move(callback));
      });
  monitor->onRescanNeeded = [this](const FSEventRescanRequest& request) {
    asio::post(strand(), [this, reason = request.reason] { requestRebuild(reason); });
  };
  monitor->onLatestEventID = [&defaults = surroundings_.defaults](std::uint64_t identifier) {
    defaults.setVolatile(kLastEventIDKey, identifier);
  };
  return monitor;
}

std::unique_ptr<platform::ChangeStream> FileIndexActor::createStream(
    platform::ChangeStreamOptions options, platform::ChangeStream::Callback callback) const {
  try {
    options.index = std::make_shared<DatabaseIndexView>(surroundings_.dataFolder, gate_);
    return surroundings_.createStream(std::move(options), std::move(callback));
  } catch (const std::exception&) {
    return nullptr;  // the index is as its last rebuild left it
  }
}

void FileIndexActor::enqueue(std::vector<FSEventItem> events) {
  gate_->handOver();
  asio::post(strand(), [this, events = std::move(events)]() mutable {
    updates_.push(std::move(events));
    if (updateTask_ && !updateTask_.isDone()) return;
    updateTask_ =
        tasks_.spawn([this](std::stop_token stop) { return applyUpdates(std::move(stop)); });
  });
}

tasks::Async<void> FileIndexActor::applyUpdates(std::stop_token stop) {
  bool isBurst = false;
  while (!updates_.isEmpty()) {
    auto next = updates_.take();
    if (!isBurst && next.events.size() >= kBurst && !isRebuilding()) {
      isBurst = isMergingOwed_ = true;
      mergeTask_.cancel();
      co_await attempt(database_.beginBurst());
    }
    if (!stop.stop_requested()) co_await attempt(update(std::move(next.events)));
    for (; next.lists > 0; --next.lists) gate_->applied();
    // Inside the loop: what is delivered meanwhile starts no task of its own.
    if (isBurst && updates_.isEmpty()) {
      isBurst = false;
      // A rebuild defers merging too, and ends that itself.
      if (!isRebuilding()) co_await attempt(database_.endBurst());
    }
  }
  startMerging();
}

tasks::Async<void> FileIndexActor::update(std::vector<FSEventItem> events) {
  auto changes = planIncrementalUpdate(events);
  const bool hasUpserts = !changes.upserts.empty();
  const auto difference = co_await database_.apply(std::move(changes));
  if (rows_) *rows_ += difference.growth();
  if (hasUpserts) {
    if (!rows_) co_await countRows();
    publish([rows = rows_.value_or(0)](IndexStatus& status) {
      status.state = IndexStatus::State::idle();
      status.totalFiles = rows;
    });
  } else if (difference.removed > 0) {
    // The status stays; what shows files is told that there are fewer.
    publish([](IndexStatus&) {});
  }
}

tasks::Async<std::int64_t> FileIndexActor::countRows() {
  const auto rows = co_await database_.totalFileCount();
  rows_ = rows;
  co_return rows;
}

tasks::Async<void> FileIndexActor::attempt(tasks::Async<void> step) const {
  try {
    co_await std::move(step);
  } catch (const std::exception& error) {
    if (tasks_.isClosed()) co_return;  // the one that broke it off knows
    surroundings_.log(std::string("[FSEvents] Incremental update error: ") + error.what());
  }
}

void FileIndexActor::publish(std::function<void(IndexStatus&)> change) const {
  asio::post(surroundings_.main, [status = std::weak_ptr(status_), change = std::move(change)] {
    if (const auto live = status.lock()) live->update(change);
  });
}

}  // namespace zelnor
