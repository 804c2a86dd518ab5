#pragma once

#include <memory>

#include "tasks/Async.h"

namespace zelnor::platform {

/// Qt's event loop as the executor of the main thread.
///
/// The work waits in a queue of ours; Qt is only woken to empty it. Construct it on the
/// main thread once the QCoreApplication exists. It must be the last of everything that runs tasks
/// to go: what other executors drop unfinished is unwound through this one. What still waits then
/// is dropped.
class QtMainExecutor {
 public:
  QtMainExecutor();
  ~QtMainExecutor();
  QtMainExecutor(const QtMainExecutor&) = delete;
  QtMainExecutor& operator=(const QtMainExecutor&) = delete;

  /// To post to from any thread.
  [[nodiscard]] tasks::Executor executor() const;

 private:
  class Receiver;
  std::unique_ptr<Receiver> receiver_;
};

}  // namespace zelnor::platform
