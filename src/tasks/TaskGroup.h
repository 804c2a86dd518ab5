#pragma once

#include <functional>
#include <stop_token>
#include <vector>

#include "tasks/Async.h"
#include "tasks/Task.h"

namespace zelnor::tasks {

/// The tasks of one owner, on one executor: cancelled together, awaited together. Used on that
/// executor only.
class TaskGroup {
 public:
  explicit TaskGroup(Executor executor);
  /// Cancels what still runs; it ends on its own.
  ~TaskGroup();
  TaskGroup(const TaskGroup&) = delete;
  TaskGroup& operator=(const TaskGroup&) = delete;

  /// Starts `body`; see Task::spawn. Once the group is closed nothing is started, and the task is
  /// none.
  Task spawn(std::function<Async<void>(std::stop_token)> body);
  void cancelAll() const;
  /// Cancels everything, and starts nothing any more.
  void close();
  [[nodiscard]] bool isClosed() const { return isClosed_; }
  /// Returns when every task that was started before has ended, however it ended.
  [[nodiscard]] Async<void> wait() const;

 private:
  Executor executor_;
  std::vector<Task> running_;
  bool isClosed_ = false;
};

}  // namespace zelnor::tasks
