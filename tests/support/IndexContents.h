#pragma once

#include <map>
#include <string>
#include <utility>

#include "tests/support/IndexerFixture.h"

namespace zelnor::test {

/// What the index holds, by path, without row ids.
inline std::map<std::string, FileRecord> indexed(Indexer& indexer) {
  std::map<std::string, FileRecord> rows;
  for (auto& record : indexer.main().await(indexer.actor().sharedDatabase().search(
           {"SELECT id, name, path, size, mtime, kind, inode FROM files", {}}, /*limit=*/0))) {
    record.id = 0;
    rows.emplace(record.path, std::move(record));
  }
  return rows;
}

}  // namespace zelnor::test
