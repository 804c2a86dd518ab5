#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/FileRecord.h"
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

    static Row of(FileRecord record);
  };

  /// What became of a row.
  struct Change {
    Row row;                          ///< as it was
    std::optional<std::string> path;  ///< where it is now; nothing if it is gone
  };

  explicit FullTextIndex(sqlite3* connection);

  /// Adds the rows of `files` with ids above `id`.
  void addRowsAfter(std::int64_t id);
  /// Takes out the terms of rows as they were when they were added, and puts in those of rows that
  /// are elsewhere now.
  void change(std::vector<Change> changes);
  /// Makes all anew from table `files`.
  void rebuild();
  /// Forgets everything at once.
  void clear();

  /// Merging keeps searches fast but takes most of the time of writing: many changes at
  /// once put it off. That is stored, and holds until `resumeMerging`, also in later processes:
  /// with many pieces left, the next ordinary write would merge them all at once.
  void deferMerging();
  /// Back to the defaults of FTS5.
  void resumeMerging();
  [[nodiscard]] bool isMergingDeferred();
  /// Merges a few pages of what was put off; answers whether more is left.
  bool mergeStep();

 private:
  /// The stored value of an option; nothing if it has its default.
  [[nodiscard]] std::optional<std::int64_t> configured(const std::string& option) const;
  void configure(const std::string& option, int value);

  sqlite3* connection_;
  Statement addRows_;
  Statement add_;
  Statement remove_;
};

}  // namespace zelnor
