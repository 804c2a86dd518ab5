#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "results/AlertQueue.h"
#include "results/FileOperationServices.h"
#include "search/SearchResult.h"
#include "tasks/TaskGroup.h"

namespace zelnor {

/// Whom a run tells how far it is. Main thread.
struct TrashObserver {
  std::function<void(int done, int total)> progressed;
  /// The run has worked for long.
  std::function<void()> isLong;
};

/// How a run ended.
struct TrashOutcome {
  std::set<std::int64_t> attempted;  ///< the rows of the files that it tried to move
  bool wasRefused = false;           ///< the user closed an alert and wanted no more
};

/// Moves the files of one request to the trash, one after the other. Main thread.
class TrashRun {
 public:
  /// All of these outlive the run, and so does what it has started in `group`.
  TrashRun(const FileOperationServices& services, AlertQueue& alerts, tasks::TaskGroup& group,
           TrashObserver observer)
      : services_(services), alerts_(alerts), group_(group), observer_(std::move(observer)) {}

  /// Ends after the file in hand when `stop` is requested, or when the user wants no more. The
  /// caller keeps `results`.
  tasks::Async<TrashOutcome> run(const std::vector<SearchResult>& results, std::stop_token stop);

 private:
  tasks::Async<bool> moveOne(const std::string& path, bool moreFollow);
  void watchTime();

  const FileOperationServices& services_;
  AlertQueue& alerts_;
  tasks::TaskGroup& group_;
  TrashObserver observer_;
  tasks::Task watch_;
};

}  // namespace zelnor
