#include "store/IndexDatabase.h"

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>

#include "platform/UserFolders.h"
#include "store/ApplyChanges.h"
#include "store/DatabaseError.h"
#include "store/FileTable.h"
#include "store/FullTextIndex.h"
#include "store/SchemaManager.h"
#include "tasks/Cancellation.h"

namespace zelnor {

namespace {

constexpr int kBusyTimeoutMilliseconds = 5000;
// Pages in the log at which a commit writes it back: SQLite's default, and a rarer one for bulk
// loads, which write the same pages again and again.
constexpr int kCheckpointPages = 1000;
constexpr int kBulkCheckpointPages = 16000;
constexpr std::int64_t kReservedRows = 200;

// In the header field that SQLite leaves to applications stands what a bulk load is filled from, so
// that a process that dies meanwhile is found out by the next; otherwise this.
constexpr std::int32_t kFinished = 0;

void setUnfinished(sqlite3* connection, std::int32_t source) {
  SchemaManager::exec(connection, "PRAGMA user_version=" + std::to_string(source));
}

/// SQLite gives its companion files the mode of the database, which it would create readable by
/// everybody. The file is not opened: to close it again would drop every lock that the connections
/// of this process have on it (https://www.sqlite.org/howtocorrupt.html, section 2.2).
void createPrivateFile(const std::string& path) {
  constexpr mode_t kOwnersAlone = S_IRUSR | S_IWUSR;
  ::mknod(path.c_str(), S_IFREG | kOwnersAlone, /*dev=*/0);
  ::chmod(path.c_str(), kOwnersAlone);
}

/// SQLite counts every allocation under one lock of the process, for figures that nobody reads
/// here: searches would wait for the writer. Only possible before its first use in the process.
void leaveMemoryUncounted() { sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0); }

ConnectionHandle connect(const std::string& path, int flags) {
  static std::once_flag once;
  std::call_once(once, leaveMemoryUncounted);
  sqlite3* connection = nullptr;
  const int code =
      sqlite3_open_v2(path.c_str(), &connection, flags | SQLITE_OPEN_FULLMUTEX, nullptr);
  ConnectionHandle handle(connection);
  if (code != SQLITE_OK || !handle) throw DatabaseError::openFailed(path, code);
  return handle;
}

void appendRecords(Statement& rows, std::vector<FileRecord>& records) {
  while (rows.step()) {
    if (rows.text(1).data() == nullptr || rows.text(2).data() == nullptr) continue;
    records.push_back(FileTable::read(rows));
  }
}

/// While it lives SQLite sorts in files: to make an index of a large table in memory takes as much
/// memory as the index. It still sorts as much at once as the page cache may hold.
class SortingInFiles {
 public:
  explicit SortingInFiles(sqlite3* connection)
      : connection_(connection), cacheSize_(cacheSize(connection)) {
    constexpr int kSortedAtOnceKiB = 8 << 10;
    setCacheSize(-kSortedAtOnceKiB);
    SchemaManager::exec(connection_, "PRAGMA temp_store=FILE");
  }
  SortingInFiles(const SortingInFiles&) = delete;
  SortingInFiles& operator=(const SortingInFiles&) = delete;
  ~SortingInFiles() {
    sqlite3_exec(connection_, "PRAGMA temp_store=MEMORY", nullptr, nullptr, nullptr);
    setCacheSize(cacheSize_);
  }

 private:
  static std::int64_t cacheSize(sqlite3* connection) {
    Statement statement(connection, "PRAGMA cache_size");
    return statement.step() ? statement.integer(0) : 0;
  }
  void setCacheSize(std::int64_t size) const {
    const auto sql = "PRAGMA cache_size=" + std::to_string(size);
    sqlite3_exec(connection_, sql.c_str(), nullptr, nullptr, nullptr);
  }

  sqlite3* connection_;
  std::int64_t cacheSize_;
};

}  // namespace

struct IndexDatabase::Writer {
  explicit Writer(sqlite3* connection) : table(connection), fullText(connection) {}

  FileTable table;
  FullTextIndex fullText;
  bool mayLackIndexes = false;  ///< a bulk load was begun, and its end has not made them
};

/// What another thread may ask of the connection.
struct IndexDatabase::Interruption {
  /// While it lives, what runs is a search that ends soon after `stop` is requested.
  class OfSearch {
   public:
    /// Throws if it is requested already.
    OfSearch(Interruption& interruption, const std::stop_token& stop)
        : interruption_(interruption) {
      tasks::throwIfStopped(stop);
      interruption_.stop = &stop;
    }
    OfSearch(const OfSearch&) = delete;
    OfSearch& operator=(const OfSearch&) = delete;
    ~OfSearch() { interruption_.stop = nullptr; }

   private:
    Interruption& interruption_;
  };

  std::atomic<bool> isWanted = false;
  const std::stop_token* stop = nullptr;  ///< for the thread that uses the connection

  static int poll(void* self) {
    const auto& interruption = *static_cast<Interruption*>(self);
    const bool isStopped = interruption.stop != nullptr && interruption.stop->stop_requested();
    return interruption.isWanted || isStopped ? 1 : 0;
  }
  /// SQLite's own waiting for a lock ends only when its time is over.
  static int waitForLock(void* self, int attempts) {
    constexpr int kPauseMilliseconds = 5;
    if (poll(self) != 0 || attempts >= kBusyTimeoutMilliseconds / kPauseMilliseconds) return 0;
    sqlite3_sleep(kPauseMilliseconds);
    return 1;
  }
};

IndexDatabase::IndexDatabase(std::string path, ConnectionHandle connection)
    : path_(std::move(path)),
      interruption_(std::make_unique<Interruption>()),
      connection_(std::move(connection)),
      selects_(connection_.get()) {
  constexpr int kStepsBetweenLooks = 1000;  // of SQLite's machine: a millisecond at most
  sqlite3_progress_handler(connection_.get(), kStepsBetweenLooks, Interruption::poll,
                           interruption_.get());
  sqlite3_busy_handler(connection_.get(), Interruption::waitForLock, interruption_.get());
}
IndexDatabase::IndexDatabase(IndexDatabase&&) noexcept = default;
IndexDatabase& IndexDatabase::operator=(IndexDatabase&&) noexcept = default;
IndexDatabase::~IndexDatabase() = default;

IndexDatabase IndexDatabase::openForWriting(const std::string& folder) {
  platform::createPrivateFolder(folder);
  auto path = folder + "/index.sqlite";
  createPrivateFile(path);
  IndexDatabase database(path, connect(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE));
  auto* const connection = database.connection_.get();
  SchemaManager::enableWAL(connection);
  // Debian's SQLite overwrites what is deleted; names that were in the index are no secret to the
  // owner of the files.
  SchemaManager::exec(connection, "PRAGMA secure_delete=OFF");
  SchemaManager::exec(connection,
                      "PRAGMA journal_size_limit=" + std::to_string(kCheckpointPages * 4096));
  sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  // A program that quits must not wait for a disk. What is in the log is safe there.
  sqlite3_db_config(connection, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);

  // In one transaction, statements included, so that a database of another program is refused
  // untouched.
  WriteTransaction setUp(connection);
  SchemaManager::createTables(connection);
  // Whoever goes on with an unfinished load would only drop them again.
  const bool isLoading = database.unfinishedBulkLoad().has_value();
  if (!isLoading) SchemaManager::createIndexes(connection);
  database.writer_ = std::make_unique<Writer>(connection);
  database.writer_->mayLackIndexes = isLoading;
  setUp.commit();
  return database;
}

IndexDatabase IndexDatabase::openForReading(const std::string& folder) {
  auto path = folder + "/index.sqlite";
  IndexDatabase database(path, connect(path, SQLITE_OPEN_READONLY));
  SchemaManager::tuneReader(database.connection_.get());
  return database;
}

RowDifference IndexDatabase::batchInsert(std::span<const FileRecord> records) {
  RowDifference difference;
  if (!writer_ || records.empty()) return difference;
  auto& table = writer_->table;
  WriteTransaction transaction(connection_.get());
  const auto lastOldId = table.largestId();
  std::vector<FullTextIndex::Change> replaced;
  for (const auto& record : records) {
    ++difference.inserted;
    if (table.insertNew(record)) continue;
    auto old = table.find(record.path);
    // A row of this very batch is not in the full-text table yet.
    if (old && old->id <= lastOldId)
      replaced.push_back({FullTextIndex::Row::of(std::move(*old)), std::nullopt});
    table.insertOrReplace(record);
    ++difference.removed;
  }
  writer_->fullText.change(std::move(replaced));
  writer_->fullText.addRowsAfter(lastOldId);
  transaction.commit();
  return difference;
}

void IndexDatabase::deleteByPaths(std::span<const std::string> paths) {
  if (!writer_ || paths.empty()) return;
  WriteTransaction transaction(connection_.get());
  std::vector<FullTextIndex::Change> gone;
  for (const auto& path : paths) {
    auto row = writer_->table.find(path);
    if (!row) continue;
    writer_->table.erase(path);
    gone.push_back({FullTextIndex::Row::of(std::move(*row)), std::nullopt});
  }
  writer_->fullText.change(std::move(gone));
  transaction.commit();
}

RowDifference IndexDatabase::apply(FileChanges changes) {
  if (!writer_) return {};
  WriteTransaction transaction(connection_.get());
  const auto difference = applyChanges(writer_->table, writer_->fullText, std::move(changes));
  transaction.commit();
  return difference;
}

std::int64_t IndexDatabase::totalFileCount() {
  Statement count(connection_.get(), "SELECT COUNT(*) FROM files");
  return count.step() ? count.integer(0) : 0;
}

std::vector<FileRecord> IndexDatabase::search(const SelectStatement& select, std::int64_t limit,
                                              const std::stop_token& stop) {
  const Interruption::OfSearch stoppable(*interruption_, stop);
  const auto run = selects_.run(select);
  std::vector<FileRecord> records;
  records.reserve(static_cast<std::size_t>(std::clamp<std::int64_t>(limit, 0, kReservedRows)));
  try {
    appendRecords(*run, records);
  } catch (const DatabaseError&) {
    // A page that ends early is still a page: the user sees what was found.
    tasks::throwIfStopped(stop);
  }
  return records;
}

std::vector<FileRecord> IndexDatabase::allRecords(const SelectStatement& select) {
  const auto run = selects_.run(select);
  std::vector<FileRecord> records;
  appendRecords(*run, records);
  return records;
}

std::int64_t IndexDatabase::searchCount(const SelectStatement& select,
                                        const std::stop_token& stop) {
  const Interruption::OfSearch stoppable(*interruption_, stop);
  const auto run = selects_.run(select);
  try {
    return run->step() ? run->integer(0) : 0;
  } catch (const DatabaseError&) {
    tasks::throwIfStopped(stop);
    return 0;
  }
}

void IndexDatabase::rebuildFTS() {
  if (writer_) writer_->fullText.rebuild();
}

void IndexDatabase::clearAll() {
  if (!writer_) return;
  // Without triggers SQLite empties a table page by page, not row by row. One transaction: a
  // process that dies in between must not leave terms of rows that are gone.
  WriteTransaction transaction(connection_.get());
  SchemaManager::exec(connection_.get(), "DELETE FROM files");
  writer_->fullText.clear();
  transaction.commit();
}

std::vector<FileRecord> IndexDatabase::lacking(std::vector<FileRecord> records) {
  Statement known(connection_.get(), "SELECT 1 FROM files WHERE path = ?");
  std::erase_if(records, [&](const FileRecord& record) {
    known.reset();
    known.bind(/*index=*/1, std::string_view(record.path));
    return known.step();
  });
  return records;
}

void IndexDatabase::beginBulkLoad(std::int32_t source) {
  if (!writer_) return;
  sqlite3_wal_autocheckpoint(connection_.get(), kBulkCheckpointPages);
  writer_->mayLackIndexes = true;
  WriteTransaction transaction(connection_.get());
  SchemaManager::dropIndexes(connection_.get());
  setUnfinished(connection_.get(), source);
  writer_->fullText.deferMerging();
  transaction.commit();
}

void IndexDatabase::endBulkLoad() {
  if (!writer_) return;
  sqlite3_wal_autocheckpoint(connection_.get(), kCheckpointPages);
  makeIndexes();
  setUnfinished(connection_.get(), kFinished);
  checkpoint();
}

void IndexDatabase::breakOffBulkLoad() {
  if (!writer_) return;
  sqlite3_wal_autocheckpoint(connection_.get(), kCheckpointPages);
  checkpoint();  // the indexes may need the room that the log takes
  makeIndexes();
}

void IndexDatabase::makeIndexes() {
  const SortingInFiles sortingInFiles(connection_.get());
  SchemaManager::createIndexes(connection_.get());
  writer_->mayLackIndexes = false;
}

std::optional<std::int32_t> IndexDatabase::unfinishedBulkLoad() {
  Statement version(connection_.get(), "PRAGMA user_version");
  const auto source = version.step() ? version.integer(0) : kFinished;
  return source != kFinished ? std::optional(static_cast<std::int32_t>(source)) : std::nullopt;
}

void IndexDatabase::beginBurst() {
  if (!writer_) return;
  sqlite3_wal_autocheckpoint(connection_.get(), kBulkCheckpointPages);
  writer_->fullText.deferMerging();
}

void IndexDatabase::endBurst() {
  if (!writer_) return;
  sqlite3_wal_autocheckpoint(connection_.get(), kCheckpointPages);
}

bool IndexDatabase::mergeStep() {
  if (!writer_) return false;
  if (writer_->mayLackIndexes) {
    makeIndexes();
    return true;
  }
  if (writer_->fullText.mergeStep()) return true;
  // Not before: with so many pieces left, the next write would merge them all at once.
  writer_->fullText.resumeMerging();
  checkpoint();
  return false;
}

bool IndexDatabase::isMergingDeferred() { return writer_ && writer_->fullText.isMergingDeferred(); }

void IndexDatabase::setInterrupted(bool isInterrupted) {
  interruption_->isWanted = isInterrupted;
  if (isInterrupted) sqlite3_interrupt(connection_.get());
}

void IndexDatabase::checkpoint() {
  // It runs no instructions, so it would not be asked.
  if (interruption_->isWanted) return;
  sqlite3_wal_checkpoint_v2(connection_.get(), nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr,
                            nullptr);
}

}  // namespace zelnor
