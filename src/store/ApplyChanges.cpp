#include "store/ApplyChanges.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <unordered_set>
#include <utility>
#include <vector>

namespace zelnor {

namespace {

/// Compares records by what stays the same when a file moves within its file system.
struct SameButPlace {
  std::size_t operator()(const FileRecord* record) const {
    const auto inode = std::hash<std::int64_t>{}(record->inode);
    return inode * 31 + std::hash<std::string>{}(record->name);
  }
  bool operator()(const FileRecord* left, const FileRecord* right) const {
    return left->inode == right->inode && left->size == right->size &&
           left->mtime == right->mtime && left->kind == right->kind && left->name == right->name;
  }
};

class Application {
 public:
  Application(FileTable& table, FullTextIndex& fullText) : table_(table), fullText_(fullText) {}

  RowDifference run(FileChanges changes) {
    const auto lastOldId = table_.largestId();
    lookUp(std::move(changes.upserts));
    Placeless placeless;
    for (auto& newcomer : newcomers_) placeless.insert(&newcomer);
    for (const auto& path : changes.removals) {
      if (auto stored = table_.find(path)) leave(std::move(*stored), placeless);
    }
    for (auto& stored : replaced_) erase(std::move(stored));
    insert();
    fullText_.change(std::move(terms_));
    fullText_.addRowsAfter(lastOldId);
    return difference_;
  }

 private:
  using Placeless = std::unordered_multiset<FileRecord*, SameButPlace, SameButPlace>;

  void lookUp(std::vector<FileRecord> records) {
    for (auto& record : records) {
      auto stored = table_.find(record.path);
      if (!stored) {
        newcomers_.push_back(std::move(record));
      } else if (!SameButPlace{}(&*stored, &record)) {
        replaced_.push_back(std::move(*stored));
        replacements_.push_back(std::move(record));
      }
    }
  }

  /// The row goes where a newcomer is that may be the same file, or goes away.
  void leave(FileRecord stored, Placeless& newcomers) {
    const auto found = newcomers.find(&stored);
    if (found == newcomers.end()) return erase(std::move(stored));
    auto& newcomer = **found;
    newcomers.erase(found);
    table_.move(stored.id, newcomer.path);
    terms_.push_back({FullTextIndex::Row::of(std::move(stored)), std::exchange(newcomer.path, {})});
    ++difference_.moved;
  }

  void erase(FileRecord stored) {
    table_.erase(stored.id);
    terms_.push_back({FullTextIndex::Row::of(std::move(stored)), std::nullopt});
    ++difference_.removed;
  }

  void insert() {
    auto& arrivals = replacements_;
    for (auto& newcomer : newcomers_) {
      if (!newcomer.path.empty()) arrivals.push_back(std::move(newcomer));
    }
    // The index on lower(name) is the largest of those that are kept in step.
    std::ranges::sort(arrivals, {}, &FileRecord::name);
    for (const auto& record : arrivals) table_.insertNew(record);
    difference_.inserted = static_cast<std::int64_t>(arrivals.size());
  }

  FileTable& table_;
  FullTextIndex& fullText_;
  std::vector<FileRecord> newcomers_;  ///< at new paths; without one: a row was moved there
  std::vector<FileRecord> replacements_;
  std::vector<FileRecord> replaced_;
  std::vector<FullTextIndex::Change> terms_;
  RowDifference difference_;
};

}  // namespace

RowDifference applyChanges(FileTable& table, FullTextIndex& fullText, FileChanges changes) {
  return Application(table, fullText).run(std::move(changes));
}

}  // namespace zelnor
