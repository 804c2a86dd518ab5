#include "bench/PlainWriter.h"

#include "store/DatabaseError.h"
#include "store/SchemaManager.h"

namespace zelnor::bench {
namespace {

ConnectionHandle openIndex(const std::string& path) {
  sqlite3* connection = nullptr;
  const int code = sqlite3_open(path.c_str(), &connection);
  ConnectionHandle handle(connection);
  if (code != SQLITE_OK) throw DatabaseError::openFailed(path, code);
  SchemaManager::enableWAL(connection);
  SchemaManager::createTables(connection);
  SchemaManager::createIndexes(connection);
  return handle;
}

}  // namespace

PlainWriter::PlainWriter(const std::string& path)
    : connection_(openIndex(path)),
      insert_(connection_.get(),
              "INSERT OR REPLACE INTO files(name, path, size, mtime, kind, inode) VALUES (?, ?, ?, "
              "?, ?, ?)",
              /*persistent=*/true) {}

void PlainWriter::add(const FileRecord& record) {
  if (inBatch_ == 0) SchemaManager::exec(connection_.get(), "BEGIN IMMEDIATE");
  insert_.bind(/*index=*/1, record.name);
  insert_.bind(/*index=*/2, record.path);
  insert_.bind(/*index=*/3, record.size);
  insert_.bind(/*index=*/4, record.mtime);
  insert_.bind(/*index=*/5, static_cast<std::int64_t>(record.kind));
  insert_.bind(/*index=*/6, record.inode);
  insert_.run();
  if (++inBatch_ == kBatchSize) finish();
}

void PlainWriter::finish() {
  if (inBatch_ == 0) return;
  SchemaManager::exec(connection_.get(), "COMMIT");
  inBatch_ = 0;
}

}  // namespace zelnor::bench
