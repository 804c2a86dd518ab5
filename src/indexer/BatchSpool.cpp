#include "indexer/BatchSpool.h"

#include <cstring>
#include <utility>

#include "platform/TemporaryFile.h"

namespace zelnor {

namespace {

// A spooled batch is its records one after the other: this head, then the bytes of the path. The
// name is the path's last component.
struct Head {
  std::int64_t size;
  std::int64_t mtime;
  std::int64_t inode;
  std::uint32_t pathBytes;
  FileKind kind;
};

std::string encode(const BatchSpool::Batch& batch) {
  std::string bytes;
  for (const auto& record : batch) {
    Head head{};
    head.size = record.size;
    head.mtime = record.mtime;
    head.inode = record.inode;
    head.pathBytes = static_cast<std::uint32_t>(record.path.size());
    head.kind = record.kind;
    bytes.append(reinterpret_cast<const char*>(&head), sizeof head);
    bytes.append(record.path);
  }
  return bytes;
}

BatchSpool::Batch decode(std::string_view bytes) {
  BatchSpool::Batch batch;
  while (!bytes.empty()) {
    Head head{};
    std::memcpy(&head, bytes.data(), sizeof head);
    bytes.remove_prefix(sizeof head);
    const auto path = bytes.substr(0, head.pathBytes);
    bytes.remove_prefix(head.pathBytes);
    batch.push_back({.id = 0,
                     .name = std::string(path.substr(path.rfind('/') + 1)),
                     .path = std::string(path),
                     .size = head.size,
                     .mtime = head.mtime,
                     .kind = head.kind,
                     .inode = head.inode});
  }
  return batch;
}

}  // namespace

BatchSpool::BatchSpool(const std::string& folder) : file_(platform::createTemporaryFile(folder)) {}

void BatchSpool::append(Batch batch) {
  auto waiting = write(batch);
  const std::scoped_lock lock(mutex_);
  if (!waiting && waiting_.empty())
    waiting = Waiting{.offset = 0, .bytes = 0, .inMemory = std::move(batch)};
  if (waiting) {
    waiting_.push_back(std::move(*waiting));
    wake();
  } else {
    ++lost_;
  }
}

void BatchSpool::finish() {
  const std::scoped_lock lock(mutex_);
  finished_ = true;
  wake();
}

tasks::Async<std::optional<BatchSpool::Batch>> BatchSpool::next() {
  for (;;) {
    std::shared_ptr<tasks::Completion<bool>> arrival;
    if (auto waiting = take(arrival)) {
      if (auto batch = read(*waiting)) co_return batch;
      continue;  // unreadable, and counted as lost
    }
    if (!arrival) co_return std::nullopt;
    co_await tasks::Completion<bool>::wait(arrival);
  }
}

std::uint64_t BatchSpool::lost() const {
  const std::scoped_lock lock(mutex_);
  return lost_;
}

std::optional<BatchSpool::Waiting> BatchSpool::write(const Batch& batch) {
  if (!file_) return std::nullopt;
  const auto bytes = encode(batch);
  if (!platform::writeAt(file_, bytes, end_)) return std::nullopt;
  Waiting waiting{.offset = end_, .bytes = bytes.size(), .inMemory = {}};
  end_ += static_cast<std::int64_t>(bytes.size());
  return waiting;
}

std::optional<BatchSpool::Batch> BatchSpool::read(Waiting& waiting) {
  if (waiting.bytes == 0) return std::move(waiting.inMemory);
  std::string bytes(waiting.bytes, '\0');
  if (!platform::readAt(file_, bytes, waiting.offset)) {
    const std::scoped_lock lock(mutex_);
    ++lost_;
    return std::nullopt;
  }
  platform::discardRange(file_, waiting.offset, static_cast<std::int64_t>(waiting.bytes));
  return decode(bytes);
}

/// The first batch that waits, or else an arrival to wait for, unless nothing follows.
std::optional<BatchSpool::Waiting> BatchSpool::take(
    std::shared_ptr<tasks::Completion<bool>>& arrival) {
  const std::scoped_lock lock(mutex_);
  if (!waiting_.empty()) {
    std::optional<Waiting> first(std::move(waiting_.front()));
    waiting_.pop_front();
    return first;
  }
  if (!finished_) arrival_ = arrival = std::make_shared<tasks::Completion<bool>>();
  return std::nullopt;
}

void BatchSpool::wake() {
  if (const auto arrival = std::exchange(arrival_, nullptr)) arrival->set(true);
}

}  // namespace zelnor
