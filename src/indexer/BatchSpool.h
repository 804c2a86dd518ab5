#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/FileDescriptor.h"
#include "store/FileRecord.h"
#include "tasks/Completion.h"

namespace zelnor {

/// Holds the batches of a scan, in order, until the writer takes them.
///
/// A scan outruns the writer ten to one and its stream keeps only the newest few batches. The spool
/// takes them off the stream at once and keeps them in a file without a name, so that one pass of
/// the scan is usually enough and memory does not grow with the tree. A batch that the file system
/// has no room for is lost, and counted: the caller scans again. Thread-safe, with one writer and
/// one reader.
class BatchSpool {
 public:
  using Batch = std::vector<FileRecord>;

  /// Spools into `folder`. If no file can be made there every batch counts as one there is no room
  /// for.
  explicit BatchSpool(const std::string& folder);

  /// Adds a batch of records, whose names are the last components of their paths; writes to the
  /// disk, never waits for the reader.
  void append(Batch batch);
  /// No batch follows.
  void finish();

  /// The next batch, or nothing at the end. Reads from the disk.
  tasks::Async<std::optional<Batch>> next();

  [[nodiscard]] std::uint64_t lost() const;

 private:
  /// Where a batch waits: in the file, or (one at a time, `bytes` is 0) in memory, so that some
  /// progress is made on a full disk too.
  struct Waiting {
    std::int64_t offset = 0;
    std::size_t bytes = 0;
    Batch inMemory;
  };

  std::optional<Waiting> write(const Batch& batch);
  std::optional<Batch> read(Waiting& waiting);
  std::optional<Waiting> take(std::shared_ptr<tasks::Completion<bool>>& arrival);
  void wake();

  platform::FileDescriptor file_;
  std::int64_t end_ = 0;

  mutable std::mutex mutex_;
  std::deque<Waiting> waiting_;
  std::uint64_t lost_ = 0;
  bool finished_ = false;
  std::shared_ptr<tasks::Completion<bool>> arrival_;
};

}  // namespace zelnor
