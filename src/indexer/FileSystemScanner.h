#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "indexer/IndexConfiguration.h"
#include "platform/FolderVisitor.h"
#include "store/FileRecord.h"
#include "tasks/Async.h"
#include "tasks/BatchStream.h"
#include "tasks/Task.h"

namespace zelnor {

/// Walks folder trees and hands over what it finds, in batches.
struct FileSystemScanner {
  using Stream = tasks::BatchStream<FileRecord>;
  /// Told how many records the scan has produced so far, after each batch, on the thread that
  /// walks.
  using ProgressCallback = std::function<void(std::int64_t)>;

  /// At most this many batches wait for the consumer; the walk does not wait for it, the oldest
  /// batch is discarded.
  static constexpr std::size_t kMaxWaitingBatches = 4;

  /// A scan that goes on by itself. The stream ends when the walk is over, also when `walk` was
  /// cancelled; nothing else stops the walk, least of all a consumer that goes away.
  struct Scan {
    std::shared_ptr<Stream> stream;
    tasks::Task walk;
  };

  std::size_t batchSize = 10'000;  ///< records per batch; the last may have fewer

  /// Starts to walk `roots`, in order, on `executor`, and returns at once. The roots themselves are
  /// no records. What cannot be listed or read is passed over.
  ///
  /// `visitor`, if there is one, is told of the roots and of every folder that belongs in the
  /// index, and a record says how its folder was after that.
  [[nodiscard]] Scan scan(std::vector<std::string> roots, IndexConfiguration config,
                          ProgressCallback progressCallback, const tasks::Executor& executor,
                          std::shared_ptr<platform::FolderVisitor> visitor = nullptr) const;
};

}  // namespace zelnor
