#include "store/IndexReader.h"

#include "store/IndexDatabase.h"

namespace zelnor {

IndexReader::IndexReader(const std::string& folder)
    : database_(std::make_unique<IndexDatabase>(IndexDatabase::openForReading(folder))) {}

IndexReader::~IndexReader() = default;

std::vector<FileRecord> IndexReader::recordsFrom(std::string_view path, std::size_t limit) {
  return database_->allRecords(
      {"SELECT id, name, path, size, mtime, kind, inode FROM files WHERE path >= ? "
       "ORDER BY path LIMIT " +
           std::to_string(limit),
       {std::string(path)}});
}

std::optional<std::int64_t> IndexReader::inodeOf(const std::string& path) {
  const auto records = database_->allRecords(
      {"SELECT id, name, path, size, mtime, kind, inode FROM files WHERE path = ?", {path}});
  return records.empty() ? std::nullopt : std::optional(records.front().inode);
}

std::vector<std::string> IndexReader::pathsWithInode(FileKind kind, std::int64_t inode) {
  std::vector<std::string> paths;
  for (auto& record :
       database_->allRecords({"SELECT id, name, path, size, mtime, kind, inode FROM files "
                              "WHERE inode = ? AND +kind = ?",
                              {inode, static_cast<std::int64_t>(kind)}})) {
    paths.push_back(std::move(record.path));
  }
  return paths;
}

}  // namespace zelnor
