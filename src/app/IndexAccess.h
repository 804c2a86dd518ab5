#pragma once

#include <chrono>
#include <memory>
#include <stop_token>
#include <string>

#include "indexer/FileIndexActor.h"
#include "indexer/IndexMaintainer.h"
#include "search/SearchEngine.h"
#include "tasks/Async.h"
#include "tasks/Clock.h"

namespace zelnor::app {

/// The index as this process has it open: always to search, and to write as long as no other
/// process does.
///
/// Used on the main thread, which waits for nothing: what blocks runs elsewhere. The owner awaits
/// `close()` before it destroys the access.
class IndexAccess final : public IndexMaintainer {
 public:
  /// Between two looks at an index that another process is just making.
  static constexpr std::chrono::milliseconds kRetryPause{200};

  /// Searches are answered, and files opened, on `interactive`.
  IndexAccess(FileIndexActor::Surroundings surroundings, tasks::Executor interactive,
              tasks::Clock& clock);
  ~IndexAccess() override;
  IndexAccess(const IndexAccess&) = delete;
  IndexAccess& operator=(const IndexAccess&) = delete;

  /// Opens the index, and makes it if this process is the one that writes. If another one is just
  /// making it, this takes until it is there. Ends early, and `isOpen()` says so, when `stop` is
  /// requested. Throws DatabaseError, or std::system_error if the data folder cannot be used.
  tasks::Async<void> open(std::stop_token stop);
  [[nodiscard]] bool isOpen() const { return searcher_ != nullptr; }

  /// Returns when this process writes the index: once the other one that does has ended, or without
  /// effect when `stop` is requested. Throws as `open` does.
  tasks::Async<void> takeOver(std::stop_token stop);

  /// The writing side; nothing if another process holds it.
  FileIndexActor* indexer();
  /// Once the index is open, until it is closed.
  SearchEngine& engine();

  /// By the writing side. While another process holds it the index cannot be rebuilt, which is an
  /// error with words for the user, and whoever writes next follows the stored configuration.
  tasks::Async<void> rebuildIndex(IndexConfiguration config) override;
  tasks::Async<void> startMonitoring(IndexConfiguration config) override;

  /// Ends whatever runs in the index early; nothing is written afterwards.
  tasks::Async<void> stop();
  /// After `open` and `takeOver` have ended: stops, and closes the index.
  tasks::Async<void> close();

 private:
  struct Writer;
  struct Searcher;

  [[nodiscard]] std::string lockPath() const;
  tasks::Async<void> openToWriteIfFree();
  tasks::Async<void> openToSearchIfThere();

  const FileIndexActor::Surroundings surroundings_;
  const tasks::Executor interactive_;
  tasks::Clock& clock_;
  std::unique_ptr<Writer> writer_;
  std::unique_ptr<Searcher> searcher_;
};

}  // namespace zelnor::app
