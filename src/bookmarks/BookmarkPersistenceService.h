#pragma once

#include <memory>
#include <string>

#include "bookmarks/BookmarkLists.h"
#include "tasks/Actor.h"

namespace zelnor {

/// Keeps bookmarks and categories in "bookmarks.json" and "categories.json" of one folder.
///
/// Both are replaced whole and atomically, with 0600. Nothing here fails: what cannot be read
/// counts as not there, what cannot be written stays as it was. A file that is there but cannot be
/// made sense of is set aside under another name before the first change, not overwritten.
class BookmarkPersistenceService : private tasks::Actor {
 public:
  /// Works on `background`, in the order of the calls. Nothing is created before the first `save`.
  BookmarkPersistenceService(const std::string& folder, const tasks::Executor& background);

  /// The path of the bookmarks' file.
  [[nodiscard]] const std::string& storageURL() const { return storageURL_; }

  /// What is stored; always with at least one category.
  [[nodiscard]] tasks::Async<BookmarkLists> load() const;

  /// Stores `lists` in place of what was there, some time later; see `flush()`. Any thread.
  void save(BookmarkLists lists) const;

  /// Returns when everything saved so far has been written.
  [[nodiscard]] tasks::Async<void> flush() const;

 private:
  class Files;
  std::string storageURL_;
  std::shared_ptr<Files> files_;  ///< what waits to be written keeps it
};

}  // namespace zelnor
