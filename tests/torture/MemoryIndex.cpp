#include "tests/torture/MemoryIndex.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

// An entry of the journal: a letter, the path and a NUL byte, and for rows (U) four numbers. D is a
// removal, C clears all, I is an identifier in place of a path.

namespace zelnor::test {

namespace {

using Numbers = std::array<std::int64_t, 4>;

std::string entryOf(char letter, const std::string& text = {}) {
  std::string entry(1, letter);
  entry += text;
  entry += '\0';
  return entry;
}

std::string rowEntry(const FileRecord& row) {
  const Numbers numbers{row.size, row.mtime, static_cast<std::int64_t>(row.kind), row.inode};
  auto entry = entryOf('U', row.path);
  entry.append(reinterpret_cast<const char*>(numbers.data()), sizeof numbers);
  return entry;
}

platform::IndexEntry::Kind kindOf(FileKind kind) {
  using Kind = platform::IndexEntry::Kind;
  if (kind == FileKind::symlink) return Kind::link;
  return kind == FileKind::directory ? Kind::folder : Kind::file;
}

/// What an event makes of a path: a row or its absence.
std::optional<FileRecord> outcome(const FSEventItem& item) {
  return item.type == FSEventItem::EventType::removed ? std::nullopt
                                                      : FileRecord::fromPath(item.path);
}

}  // namespace

class MemoryCursor final : public platform::IndexCursor {
 public:
  explicit MemoryCursor(std::shared_ptr<MemoryIndex> index) : index_(std::move(index)) {}

  std::optional<platform::IndexEntry> next() override {
    row_ = index_->firstFrom(from_);
    if (!row_) return std::nullopt;
    from_ = row_->path + '\0';
    return platform::IndexEntry{.path = row_->path,
                                .size = row_->size,
                                .mtime = row_->mtime,
                                .inode = static_cast<std::uint64_t>(row_->inode),
                                .kind = kindOf(row_->kind)};
  }
  void seek(std::string_view path) override { from_ = path; }

 private:
  std::shared_ptr<MemoryIndex> index_;
  std::string from_;
  std::optional<FileRecord> row_;
};

MemoryIndex::MemoryIndex(const std::string& journal) {
  std::ifstream file(journal, std::ios::binary);
  replay(std::string(std::istreambuf_iterator<char>(file), {}));
  // Written anew, without what is out of date.
  journal_ = ::open((journal + ".new").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  auto entries = entryOf('I', std::to_string(lastIdentifier_));
  for (const auto& [path, row] : rows_) entries += rowEntry(row);
  append(entries);
  ::rename((journal + ".new").c_str(), journal.c_str());
}

MemoryIndex::~MemoryIndex() { ::close(journal_); }

void MemoryIndex::apply(const std::vector<FSEventItem>& items) {
  std::map<std::string, FSEventItem> latest;
  for (const auto& item : items) latest.insert_or_assign(item.path, item);
  std::map<std::string, std::optional<FileRecord>> outcomes;
  for (const auto& [path, item] : latest) outcomes.emplace(path, outcome(item));
  std::string entries;
  for (const auto& [path, row] : outcomes) entries += row ? rowEntry(*row) : entryOf('D', path);
  const std::scoped_lock lock(mutex_);
  append(entries);
  for (auto& [path, row] : outcomes) {
    if (row) {
      rows_.insert_or_assign(path, std::move(*row));
    } else {
      rows_.erase(path);
    }
  }
}

void MemoryIndex::rebuild(const std::vector<FileRecord>& records) {
  const std::scoped_lock lock(mutex_);
  rows_.clear();
  auto entries = entryOf('C');
  for (const auto& record : records) {
    rows_.insert_or_assign(record.path, record);
    entries += rowEntry(record);
  }
  append(entries);
}

MemoryIndex::Rows MemoryIndex::rows() const {
  const std::scoped_lock lock(mutex_);
  return rows_;
}

void MemoryIndex::advanceIdentifier(std::uint64_t identifier) {
  const std::scoped_lock lock(mutex_);
  if (identifier <= lastIdentifier_) throw std::logic_error("an event identifier was used again");
  lastIdentifier_ = identifier;
  append(entryOf('I', std::to_string(identifier)));
}

std::unique_ptr<platform::IndexCursor> MemoryIndex::open(std::stop_token stop) {
  gate_.waitForHandedOver(stop);
  return std::make_unique<MemoryCursor>(shared_from_this());
}

std::vector<std::string> MemoryIndex::pathsWithInode(std::uint64_t inode, std::stop_token stop) {
  gate_.waitForHandedOver(stop);
  std::vector<std::string> paths;
  const std::scoped_lock lock(mutex_);
  for (const auto& [path, row] : rows_) {
    if (static_cast<std::uint64_t>(row.inode) == inode) paths.push_back(path);
  }
  return paths;
}

void MemoryIndex::replay(const std::string& text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const auto end = text.find('\0', at);
    if (end == std::string::npos) return;
    const char letter = text[at];
    auto path = text.substr(at + 1, end - at - 1);
    at = end + 1;
    if (letter == 'C') rows_.clear();
    if (letter == 'D') rows_.erase(path);
    if (letter == 'I') lastIdentifier_ = std::stoull(path);
    if (letter != 'U') continue;
    Numbers numbers{};
    if (text.size() - at < sizeof numbers) return;
    std::memcpy(numbers.data(), text.data() + at, sizeof numbers);
    at += sizeof numbers;
    FileRecord row{.id = 0,
                   .name = path.substr(path.rfind('/') + 1),
                   .path = path,
                   .size = numbers[0],
                   .mtime = numbers[1],
                   .kind = fileKind(numbers[2]).value_or(FileKind::file),
                   .inode = numbers[3]};
    rows_.insert_or_assign(std::move(path), std::move(row));
  }
}

/// With the mutex held, so that the journal is in order.
void MemoryIndex::append(const std::string& entries) {
  if (::write(journal_, entries.data(), entries.size()) != static_cast<ssize_t>(entries.size())) {
    throw std::runtime_error("the journal cannot be written");
  }
}

std::optional<FileRecord> MemoryIndex::firstFrom(const std::string& path) const {
  const std::scoped_lock lock(mutex_);
  const auto found = rows_.lower_bound(path);
  return found == rows_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace zelnor::test
