#include "indexer/IndexFiller.h"

#include <bit>
#include <exception>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

#include "tasks/Cancellation.h"

namespace zelnor {

namespace {

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

/// A number for the configuration that another one will hardly have: FNV-1a of all that it says.
class Fingerprint {
 public:
  explicit Fingerprint(const IndexConfiguration& config) {
    add(config.includedPaths);
    add(config.excludedPaths);
    for (const bool isSet :
         {config.skipHiddenFiles, config.skipPackageContents, config.skipSymlinks}) {
      add(isSet ? 1U : 0U);
    }
  }
  /// Never 0.
  [[nodiscard]] std::int32_t value() const {
    return hash_ != 0 ? std::bit_cast<std::int32_t>(hash_) : 1;
  }

 private:
  void add(std::span<const std::string> paths) {
    for (const std::string_view path : paths) {
      for (const char byte : path) add(static_cast<unsigned char>(byte));
      add('\0');  // which no path holds
    }
    add('\0');
  }
  void add(std::uint32_t byte) {
    constexpr std::uint32_t kPrime = 16'777'619;
    hash_ = (hash_ ^ byte) * kPrime;
  }

  std::uint32_t hash_ = 2'166'136'261;
};

}  // namespace

tasks::Async<void> IndexFiller::fill(IndexConfiguration config, Start start, Visitor visitor,
                                     std::stop_token stop) {
  std::exception_ptr failure;
  try {
    co_await load(config, start, std::move(visitor), stop);
  } catch (...) {
    failure = std::current_exception();
  }
  if (!failure) co_return;
  // Whoever asks to stop goes on with the load, sooner or later.
  if (!stop.stop_requested()) {
    try {
      co_await parts_.database.breakOffBulkLoad();
    } catch (const DatabaseError&) {  // NOLINT(bugprone-empty-catch): what led here is what counts;
                                      // merging tries again
    }
  }
  std::rethrow_exception(failure);
}

tasks::Async<bool> IndexFiller::canGoOn(const IndexConfiguration& config) {
  const auto wanted = Fingerprint(config).value();
  const auto unfinished = co_await parts_.database.unfinishedBulkLoad();
  co_return unfinished == wanted;
}

tasks::Async<void> IndexFiller::load(const IndexConfiguration& config, Start start, Visitor visitor,
                                     std::stop_token stop) {
  tasks::throwIfStopped(stop);
  auto& database = parts_.database;
  writtenRecords_ = 0;
  if (start == Start::empty) {
    co_await database.clearAll();
    parts_.emptied();
  }
  co_await database.beginBulkLoad(Fingerprint(config).value());
  if (start == Start::keeping) writtenRecords_ = co_await database.totalFileCount();
  bool onlyLacking = start == Start::keeping;
  for (;;) {
    // Once is enough: what happens from then on is seen.
    auto first = std::exchange(visitor, nullptr);
    const bool isWhole = co_await loadOnce(config, onlyLacking, std::move(first), stop);
    if (isWhole) break;
    onlyLacking = true;
  }
  co_await database.endBulkLoad();
}

/// One pass of the scan; answers whether it lost nothing.
tasks::Async<bool> IndexFiller::loadOnce(const IndexConfiguration& config, bool onlyLacking,
                                         Visitor visitor, std::stop_token stop) {
  const auto scan = scanner_.scan(
      config.includedPaths, config, [](std::int64_t) {}, parts_.background, std::move(visitor));
  const std::stop_callback stopWalk(stop, [walk = scan.walk] { walk.cancel(); });
  const auto spool = std::make_shared<BatchSpool>(parts_.folder);
  const auto drain = drainInto(spool, scan.stream, parts_.background);
  const auto before = writtenRecords_;
  std::exception_ptr failure;
  try {
    co_await write(*spool, onlyLacking, stop);
  } catch (...) {
    failure = std::current_exception();
  }
  if (failure) {
    scan.walk.cancel();
    co_await scan.walk.ended();
    co_await drain.ended();
    std::rethrow_exception(failure);
  }
  co_await scan.walk.wait();
  co_await drain.wait();
  // Another pass would lose the same batches again.
  if (spool->lost() > 0 && writtenRecords_ == before) {
    throw std::system_error(std::make_error_code(std::errc::no_space_on_device), parts_.folder);
  }
  co_return scan.stream->discarded() == 0 && spool->lost() == 0;
}

tasks::Async<void> IndexFiller::write(BatchSpool& spool, bool onlyLacking, std::stop_token stop) {
  while (auto batch = co_await spool.next()) {
    if (onlyLacking) batch = co_await parts_.database.lacking(std::move(*batch));
    tasks::throwIfStopped(stop);
    writtenRecords_ += static_cast<std::int64_t>(batch->size());
    const auto difference = co_await parts_.database.batchInsert(std::move(*batch));
    parts_.written(writtenRecords_, difference);
  }
  tasks::throwIfStopped(stop);
}

}  // namespace zelnor
