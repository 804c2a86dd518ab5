#include "indexer/DatabaseIndexView.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <utility>

namespace zelnor {

namespace {

/// Rows per query: enough to make the query's own cost disappear, little enough to stay in the
/// processor's cache.
constexpr std::size_t kPageRows = 1000;

using Kind = platform::IndexEntry::Kind;

Kind kindOf(FileKind kind) {
  if (kind == FileKind::symlink) return Kind::link;
  return kind == FileKind::directory ? Kind::folder : Kind::file;
}

class DatabaseCursor final : public platform::IndexCursor {
 public:
  explicit DatabaseCursor(const std::string& folder) : reader_(folder) {}

  std::optional<platform::IndexEntry> next() override {
    if (position_ == page_.size() && !fetch()) return std::nullopt;
    const auto& record = page_[position_++];
    return platform::IndexEntry{.path = record.path,
                                .size = record.size,
                                .mtime = record.mtime,
                                .inode = std::bit_cast<std::uint64_t>(record.inode),
                                .kind = kindOf(record.kind)};
  }

  void seek(std::string_view path) override {
    nextPage_ = path;
    page_.clear();
    position_ = 0;
    isAtEnd_ = false;
  }

 private:
  bool fetch() {
    position_ = 0;
    page_.clear();
    if (isAtEnd_) return false;
    page_ = reader_.recordsFrom(nextPage_, kPageRows);
    isAtEnd_ = page_.size() < kPageRows;
    if (page_.empty()) return false;
    // No path holds a NUL, so this is the least text after the last path.
    nextPage_ = page_.back().path + '\0';
    return true;
  }

  IndexReader reader_;
  std::string nextPage_;
  std::vector<FileRecord> page_;
  std::size_t position_ = 0;
  bool isAtEnd_ = false;
};

}  // namespace

DatabaseIndexView::DatabaseIndexView(std::string folder,
                                     std::shared_ptr<platform::HandoverGate> gate)
    : folder_(std::move(folder)), gate_(std::move(gate)), reader_(folder_) {}

std::unique_ptr<platform::IndexCursor> DatabaseIndexView::open(std::stop_token stop) {
  gate_->waitForHandedOver(stop);
  return std::make_unique<DatabaseCursor>(folder_);
}

std::optional<std::uint64_t> DatabaseIndexView::inodeOf(const std::string& path,
                                                        std::stop_token stop) {
  gate_->waitForHandedOver(stop);
  const std::scoped_lock lock(mutex_);
  const auto inode = reader_.inodeOf(path);
  return inode ? std::optional(std::bit_cast<std::uint64_t>(*inode)) : std::nullopt;
}

std::vector<std::string> DatabaseIndexView::pathsWithInode(std::uint64_t inode,
                                                           std::stop_token stop) {
  gate_->waitForHandedOver(stop);
  const std::scoped_lock lock(mutex_);
  const auto number = std::bit_cast<std::int64_t>(inode);
  auto paths = reader_.pathsWithInode(FileKind::file, number);
  std::ranges::move(reader_.pathsWithInode(FileKind::symlink, number), std::back_inserter(paths));
  return paths;
}

std::vector<std::string> DatabaseIndexView::foldersWithInode(std::uint64_t inode) {
  const std::scoped_lock lock(mutex_);
  return reader_.pathsWithInode(FileKind::directory, std::bit_cast<std::int64_t>(inode));
}

}  // namespace zelnor
