#include "store/IndexDatabase.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "platform/FileDescriptor.h"
#include "platform/UserFolders.h"
#include "store/DatabaseError.h"
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

// Kept in the header field that SQLite leaves to applications, so that a process that dies during a
// bulk load is found out by the next.
constexpr std::int64_t kUnfinished = 1;

void setUnfinished(sqlite3* connection, bool unfinished) {
  SchemaManager::exec(connection,
                      "PRAGMA user_version=" + std::to_string(unfinished ? kUnfinished : 0));
}

/// SQLite gives its companion files the mode of the database, which it would create readable by
/// everybody.
void createPrivateFile(const std::string& path) {
  const platform::FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (file) ::fchmod(file.get(), 0600);
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
  sqlite3_busy_timeout(connection, kBusyTimeoutMilliseconds);
  return handle;
}

/// While it lives, the connection's statements fail soon after `stop` is requested.
class Stoppable {
 public:
  /// Throws if it is requested already.
  Stoppable(sqlite3* connection, const std::stop_token& stop) : connection_(connection) {
    tasks::throwIfStopped(stop);
    const auto isStopped = [](void* token) {
      return static_cast<int>(static_cast<const std::stop_token*>(token)->stop_requested());
    };
    // SQLite only hands the pointer back, and knows no const.
    sqlite3_progress_handler(connection_, kStepsBetweenLooks, isStopped,
                             const_cast<std::stop_token*>(&stop));  // NOLINT(*-const-cast)
  }
  Stoppable(const Stoppable&) = delete;
  Stoppable& operator=(const Stoppable&) = delete;
  ~Stoppable() { sqlite3_progress_handler(connection_, 0, nullptr, nullptr); }

 private:
  static constexpr int kStepsBetweenLooks = 1000;  // of SQLite's machine: a millisecond at most
  sqlite3* connection_;
};

FileRecord readRecord(const Statement& row) {
  FileRecord record;
  record.id = row.integer(0);
  record.name = row.text(1);
  record.path = row.text(2);
  record.size = row.integer(3);
  record.mtime = row.integer(4);
  record.kind = fileKind(row.integer(5)).value_or(FileKind::file);
  record.inode = row.integer(6);
  return record;
}

FullTextIndex::Row rowOf(FileRecord record) {
  return {record.id, std::move(record.name), std::move(record.path)};
}

/// Records to be stored, found by what they have in common with those of other paths.
class Arrivals {
 public:
  explicit Arrivals(std::span<FileRecord> records) {
    for (auto& record : records) placeless_.emplace(withoutPlace(record), &record);
  }

  /// One that is the same as `stored` but for the path, or null.
  [[nodiscard]] FileRecord* find(const FileRecord& stored) const {
    const auto found = placeless_.find(withoutPlace(stored));
    return found == placeless_.end() ? nullptr : found->second;
  }
  /// Leaves out the one that was found.
  void take(const FileRecord& stored) { placeless_.erase(placeless_.find(withoutPlace(stored))); }

 private:
  static FileRecord withoutPlace(FileRecord record) {
    record.id = 0;
    record.path.clear();
    return record;
  }

  std::unordered_multimap<FileRecord, FileRecord*> placeless_;
};

void appendRecords(Statement& rows, std::vector<FileRecord>& records) {
  while (rows.step()) {
    if (rows.text(1).data() == nullptr || rows.text(2).data() == nullptr) continue;
    records.push_back(readRecord(rows));
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
  explicit Writer(sqlite3* connection)
      : insertStmt(connection,
                   "INSERT OR REPLACE INTO files(name, path, size, mtime, kind, inode)\n"
                   "VALUES (?, ?, ?, ?, ?, ?)",
                   /*persistent=*/true),
        deleteByPathStmt(connection, "DELETE FROM files WHERE path = ?", /*persistent=*/true),
        deleteByInodeStmt(connection, "DELETE FROM files WHERE inode = ?", /*persistent=*/true),
        updateByInodeStmt(connection,
                          "UPDATE files SET name=?, path=?, size=?, mtime=? WHERE inode=?",
                          /*persistent=*/true),
        insertNew(connection,
                  "INSERT OR IGNORE INTO files(name, path, size, mtime, kind, inode) "
                  "VALUES (?, ?, ?, ?, ?, ?)",
                  /*persistent=*/true),
        recordOfPath(connection,
                     "SELECT id, name, path, size, mtime, kind, inode FROM files WHERE path = ?",
                     /*persistent=*/true),
        updatePath(connection, "UPDATE files SET path = ? WHERE id = ?", /*persistent=*/true),
        lastId(connection, "SELECT max(id) FROM files", /*persistent=*/true),
        fullText(connection) {}

  Statement insertStmt;
  Statement deleteByPathStmt;
  Statement deleteByInodeStmt;
  Statement updateByInodeStmt;
  Statement insertNew;
  Statement recordOfPath;
  Statement updatePath;
  Statement lastId;
  FullTextIndex fullText;

  std::int64_t largestId() {
    lastId.reset();
    const auto id = lastId.step() ? lastId.integer(0) : 0;
    lastId.reset();
    return id;
  }

  /// What is stored for this path, if it is.
  std::optional<FileRecord> find(const std::string& path) {
    recordOfPath.reset();
    recordOfPath.bind(/*index=*/1, std::string_view(path));
    std::optional<FileRecord> record;
    if (recordOfPath.step()) record = readRecord(recordOfPath);
    recordOfPath.reset();
    return record;
  }

  void move(std::int64_t id, const std::string& path) {
    updatePath.bind(/*index=*/1, std::string_view(path));
    updatePath.bind(/*index=*/2, id);
    updatePath.run();
  }

  static void bindRecord(Statement& statement, const FileRecord& record) {
    statement.bind(/*index=*/1, std::string_view(record.name));
    statement.bind(/*index=*/2, std::string_view(record.path));
    statement.bind(/*index=*/3, record.size);
    statement.bind(/*index=*/4, record.mtime);
    statement.bind(/*index=*/5, static_cast<std::int64_t>(record.kind));
    statement.bind(/*index=*/6, record.inode);
  }
};

IndexDatabase::IndexDatabase(std::string path, ConnectionHandle connection)
    : path_(std::move(path)), connection_(std::move(connection)), selects_(connection_.get()) {}
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

  // In one transaction, statements included, so that a database of another program is refused
  // untouched.
  WriteTransaction setUp(connection);
  SchemaManager::createTables(connection);
  SchemaManager::createIndexes(connection);
  database.writer_ = std::make_unique<Writer>(connection);
  database.writer_->fullText.resumeMerging();
  setUp.commit();
  return database;
}

IndexDatabase IndexDatabase::openForReading(const std::string& folder) {
  auto path = folder + "/index.sqlite";
  IndexDatabase database(path, connect(path, SQLITE_OPEN_READONLY));
  SchemaManager::tuneReader(database.connection_.get());
  return database;
}

void IndexDatabase::batchInsert(std::span<const FileRecord> records) {
  if (!writer_ || records.empty()) return;
  WriteTransaction transaction(connection_.get());
  const auto lastOldId = writer_->largestId();
  std::vector<FullTextIndex::Row> replaced;
  for (const auto& record : records) {
    Writer::bindRecord(writer_->insertNew, record);
    writer_->insertNew.run();
    if (sqlite3_changes64(connection_.get()) != 0) continue;
    auto old = writer_->find(record.path);
    // A row of this very batch is not in the full-text table yet.
    if (old && old->id <= lastOldId) replaced.push_back(rowOf(std::move(*old)));
    Writer::bindRecord(writer_->insertStmt, record);
    writer_->insertStmt.run();
  }
  writer_->fullText.remove(std::move(replaced));
  writer_->fullText.addRowsAfter(lastOldId);
  transaction.commit();
}

void IndexDatabase::deleteByPaths(std::span<const std::string> paths) {
  if (!writer_ || paths.empty()) return;
  WriteTransaction transaction(connection_.get());
  std::vector<FullTextIndex::Row> rows;
  for (const auto& path : paths) {
    auto row = writer_->find(path);
    if (!row) continue;
    writer_->deleteByPathStmt.bind(/*index=*/1, std::string_view(path));
    writer_->deleteByPathStmt.run();
    rows.push_back(rowOf(std::move(*row)));
  }
  writer_->fullText.remove(std::move(rows));
  transaction.commit();
}

FileChanges IndexDatabase::moveRows(FileChanges changes) {
  if (!writer_ || changes.removals.empty() || changes.upserts.empty()) return changes;
  auto arrivals = Arrivals(changes.upserts);
  std::vector<FullTextIndex::Move> moves;
  WriteTransaction transaction(connection_.get());
  std::erase_if(changes.removals, [&](const std::string& path) {
    auto stored = writer_->find(path);
    auto* const arrival = stored ? arrivals.find(*stored) : nullptr;
    if (arrival == nullptr || writer_->find(arrival->path)) return false;
    arrivals.take(*stored);
    writer_->move(stored->id, arrival->path);
    moves.push_back({rowOf(std::move(*stored)), std::exchange(arrival->path, {})});
    return true;
  });
  writer_->fullText.move(std::move(moves));
  transaction.commit();
  std::erase_if(changes.upserts, [](const FileRecord& record) { return record.path.empty(); });
  return changes;
}

std::int64_t IndexDatabase::totalFileCount() {
  Statement count(connection_.get(), "SELECT COUNT(*) FROM files");
  return count.step() ? count.integer(0) : 0;
}

std::vector<FileRecord> IndexDatabase::search(const SelectStatement& select, std::int64_t limit,
                                              const std::stop_token& stop) {
  const Stoppable stoppable(connection_.get(), stop);
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
  const Stoppable stoppable(connection_.get(), stop);
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

std::vector<FileRecord> IndexDatabase::differing(std::vector<FileRecord> records) {
  if (!writer_) return records;
  std::erase_if(records, [this](const FileRecord& record) {
    auto stored = writer_->find(record.path);
    if (stored) stored->id = record.id;
    return stored == record;
  });
  return records;
}

void IndexDatabase::beginBulkLoad() {
  if (!writer_) return;
  sqlite3_wal_autocheckpoint(connection_.get(), kBulkCheckpointPages);
  WriteTransaction transaction(connection_.get());
  SchemaManager::dropIndexes(connection_.get());
  setUnfinished(connection_.get(), true);
  writer_->fullText.deferMerging();
  transaction.commit();
}

void IndexDatabase::endBulkLoad() {
  if (!writer_) return;
  sqlite3_wal_autocheckpoint(connection_.get(), kCheckpointPages);
  {
    const SortingInFiles sortingInFiles(connection_.get());
    SchemaManager::createIndexes(connection_.get());
  }
  setUnfinished(connection_.get(), false);
  checkpoint();
}

bool IndexDatabase::isBulkLoadUnfinished() {
  Statement version(connection_.get(), "PRAGMA user_version");
  return version.step() && version.integer(0) == kUnfinished;
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
  if (writer_->fullText.mergeStep()) return true;
  // Not before: with so many pieces left, the next write would merge them all at once.
  writer_->fullText.resumeMerging();
  checkpoint();
  return false;
}

void IndexDatabase::checkpoint() {
  sqlite3_wal_checkpoint_v2(connection_.get(), nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr,
                            nullptr);
}

}  // namespace zelnor
