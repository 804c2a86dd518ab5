#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/FileRecord.h"

namespace zelnor {

class IndexDatabase;

/// A connection for looking into the index from a thread that may wait, beside the actors. Used by
/// one thread at a time. Operations throw DatabaseError.
class IndexReader {
 public:
  /// Opens the index in `folder`, which must exist; writes nothing.
  explicit IndexReader(const std::string& folder);
  ~IndexReader();

  /// Up to `limit` records in byte order of their paths, from the first whose path is `path` or
  /// comes after it. No read transaction stays open, so that a long walk does not keep the
  /// write-ahead log from being reused.
  std::vector<FileRecord> recordsFrom(std::string_view path, std::size_t limit);
  /// The inode number of the record with exactly this path; nothing if there is none.
  std::optional<std::int64_t> inodeOf(const std::string& path);
  /// The paths of the entries of this kind with this inode number, on any device.
  std::vector<std::string> pathsWithInode(FileKind kind, std::int64_t inode);

 private:
  std::unique_ptr<IndexDatabase> database_;
};

}  // namespace zelnor
