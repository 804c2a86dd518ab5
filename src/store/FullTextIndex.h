#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/Sqlite.h"

namespace zelnor {

/// Keeps table `files_fts` in step with table `files`, a batch at a time, inside the caller's
/// transaction.
///
/// It is an external-content table (FTS5 manual, section 4.4.3): it holds terms but no rows, so
/// that a row's terms can only be removed by someone who still knows the row's texts.
class FullTextIndex {
 public:
  struct Row {
    std::int64_t id;
    std::string name;
    std::string path;
  };

  /// A row whose path changes.
  struct Move {
    Row row;  ///< as it was
    std::string path;
  };

  explicit FullTextIndex(sqlite3* connection);

  /// Adds the rows of `files` with ids above `id`.
  void addRowsAfter(std::int64_t id);
  /// Removes the terms of rows, as they were when they were added.
  void remove(std::vector<Row> rows);
  void move(std::vector<Move> moves);
  /// Makes all anew from table `files`.
  void rebuild();
  /// Forgets everything at once.
  void clear();

  /// Merging keeps searches fast but takes most of the time of writing: many changes at
  /// once put it off.
  void deferMerging();
  /// Back to the defaults of FTS5. Also on open, for a process that died meanwhile.
  void resumeMerging();
  /// Merges a few pages of what was put off; answers whether more is left.
  bool mergeStep();

 private:
  void configure(const std::string& option, int value);

  sqlite3* connection_;
  Statement addRows_;
  Statement add_;
  Statement remove_;
};

}  // namespace zelnor
