#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "store/FileRecord.h"

namespace zelnor {

/// One row of a result list, known by the row of the index it came from.
struct SearchResult {
  FileRecord record;

  [[nodiscard]] std::int64_t id() const { return record.id; }

  friend bool operator==(const SearchResult&, const SearchResult&) = default;
};

/// Whether both are the same file under two names, one of which it had before: nothing else about
/// it has changed.
inline bool isRenamed(const FileRecord& before, const FileRecord& after) {
  return before.inode != 0 && before.inode == after.inode && before.kind == after.kind &&
         before.size == after.size && before.mtime == after.mtime && before.path != after.path;
}

}  // namespace zelnor

template <>
struct std::hash<zelnor::SearchResult> {
  std::size_t operator()(const zelnor::SearchResult& result) const noexcept {
    return std::hash<zelnor::FileRecord>{}(result.record);
  }
};
