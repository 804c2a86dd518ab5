#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>

#include "indexer/BatchSpool.h"
#include "indexer/FileSystemScanner.h"
#include "indexer/IndexConfiguration.h"
#include "store/DatabaseManager.h"
#include "tasks/Async.h"

namespace zelnor {

/// Fills the index with what a scan finds. Used on one executor, on which its operations resume;
/// one `fill` at a time.
class IndexFiller {
 public:
  /// Whether the index is emptied first, or keeps what an unfinished `fill` has written.
  enum class Start : std::uint8_t { empty, keeping };
  using Visitor = std::shared_ptr<platform::FolderVisitor>;

  struct Parts {
    DatabaseManager& database;
    std::string folder;  ///< for what waits to be written
    tasks::Executor background;
    std::function<void()> emptied;  ///< told when the index has been
    /// Told of every batch that was written: how many records this load has written so far, and
    /// what the batch did to the rows.
    std::function<void(std::int64_t, const RowDifference&)> written;
  };

  explicit IndexFiller(Parts parts) : parts_(std::move(parts)) {}

  /// Returns when the index holds everything that there is; merging is left to be done. `visitor`,
  /// if there is one, is told of every folder before it is listed. When it fails, or `stop` is
  /// requested, what was written stays, nothing goes on, and the index is as fast to use as before.
  /// Throws DatabaseError and std::system_error, which is `tasks::cancelled()` when stopped.
  tasks::Async<void> fill(IndexConfiguration config, Start start, Visitor visitor,
                          std::stop_token stop);

  /// Whether the index holds a part of what a `fill` with `config` would write.
  tasks::Async<bool> canGoOn(const IndexConfiguration& config);

 private:
  tasks::Async<void> load(const IndexConfiguration& config, Start start, Visitor visitor,
                          std::stop_token stop);
  tasks::Async<bool> loadOnce(const IndexConfiguration& config, bool onlyLacking, Visitor visitor,
                              std::stop_token stop);
  tasks::Async<void> write(BatchSpool& spool, bool onlyLacking, std::stop_token stop);

  const Parts parts_;
  const FileSystemScanner scanner_;
  std::int64_t writtenRecords_ = 0;
};

}  // namespace zelnor
