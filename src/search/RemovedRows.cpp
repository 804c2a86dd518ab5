#include "search/RemovedRows.h"

namespace zelnor {

void RemovedRows::add(const SearchResult& row) {
  rows_.insert_or_assign(row.id(), Row{.record = row.record});
  idOf_.insert_or_assign(row.record.inode, row.id());
}

void RemovedRows::clear() {
  rows_.clear();
  idOf_.clear();
}

/// A file that was renamed has another id.
RemovedRows::Row* RemovedRows::find(const FileRecord& record) {
  auto known = rows_.find(record.id);
  if (known == rows_.end()) {
    const auto id = idOf_.find(record.inode);
    if (id != idOf_.end()) known = rows_.find(id->second);
  }
  return known == rows_.end() ? nullptr : &known->second;
}

std::int64_t RemovedRows::leaveOut(std::vector<SearchResult>& rows, bool isWhole) {
  if (rows_.empty()) return 0;
  for (auto& [id, row] : rows_) row.isHeld = false;
  const auto isRemoved = [this](const SearchResult& result) {
    auto* row = find(result.record);
    if (row == nullptr) return false;
    const bool isInPlace = row->record.path == result.record.path;
    if (isInPlace ? row->wasElsewhere : !isRenamed(row->record, result.record)) return false;
    row->wasElsewhere = !isInPlace;
    row->isHeld = true;
    return true;
  };
  const auto removed = std::erase_if(rows, isRemoved);
  if (isWhole) std::erase_if(rows_, [](const auto& row) { return !row.second.isHeld; });
  return static_cast<std::int64_t>(removed);
}

}  // namespace zelnor
