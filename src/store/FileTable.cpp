#include "store/FileTable.h"

#include <string_view>

namespace zelnor {

namespace {

void bindRecord(Statement& statement, const FileRecord& record) {
  statement.bind(/*index=*/1, std::string_view(record.name));
  statement.bind(/*index=*/2, std::string_view(record.path));
  statement.bind(/*index=*/3, record.size);
  statement.bind(/*index=*/4, record.mtime);
  statement.bind(/*index=*/5, static_cast<std::int64_t>(record.kind));
  statement.bind(/*index=*/6, record.inode);
}

}  // namespace

FileTable::FileTable(sqlite3* connection)
    : connection_(connection),
      insertStmt_(connection,
                  "INSERT OR REPLACE INTO files(name, path, size, mtime, kind, inode)\n"
                  "VALUES (?, ?, ?, ?, ?, ?)",
                  /*persistent=*/true),
      deleteByPathStmt_(connection, "DELETE FROM files WHERE path = ?", /*persistent=*/true),
      deleteByInodeStmt_(connection, "DELETE FROM files WHERE inode = ?", /*persistent=*/true),
      updateByInodeStmt_(connection,
                         "UPDATE files SET name=?, path=?, size=?, mtime=? WHERE inode=?",
                         /*persistent=*/true),
      insertNew_(connection,
                 "INSERT OR IGNORE INTO files(name, path, size, mtime, kind, inode) "
                 "VALUES (?, ?, ?, ?, ?, ?)",
                 /*persistent=*/true),
      find_(connection, "SELECT id, name, path, size, mtime, kind, inode FROM files WHERE path = ?",
            /*persistent=*/true),
      move_(connection, "UPDATE files SET path = ? WHERE id = ?", /*persistent=*/true),
      erase_(connection, "DELETE FROM files WHERE id = ?", /*persistent=*/true),
      largestId_(connection, "SELECT max(id) FROM files", /*persistent=*/true) {}

FileRecord FileTable::read(const Statement& row) {
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

std::optional<FileRecord> FileTable::find(const std::string& path) {
  find_.reset();
  find_.bind(/*index=*/1, std::string_view(path));
  std::optional<FileRecord> record;
  if (find_.step()) record = read(find_);
  find_.reset();
  return record;
}

std::int64_t FileTable::largestId() {
  largestId_.reset();
  const auto id = largestId_.step() ? largestId_.integer(0) : 0;
  largestId_.reset();
  return id;
}

bool FileTable::insertNew(const FileRecord& record) {
  bindRecord(insertNew_, record);
  insertNew_.run();
  return sqlite3_changes64(connection_) != 0;
}

void FileTable::insertOrReplace(const FileRecord& record) {
  bindRecord(insertStmt_, record);
  insertStmt_.run();
}

void FileTable::move(std::int64_t id, const std::string& path) {
  move_.bind(/*index=*/1, std::string_view(path));
  move_.bind(/*index=*/2, id);
  move_.run();
}

void FileTable::erase(std::int64_t id) {
  erase_.bind(/*index=*/1, id);
  erase_.run();
}

void FileTable::erase(const std::string& path) {
  deleteByPathStmt_.bind(/*index=*/1, std::string_view(path));
  deleteByPathStmt_.run();
}

}  // namespace zelnor
