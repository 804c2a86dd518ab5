#include "tasks/TaskGroup.h"

#include <utility>

namespace zelnor::tasks {

namespace {

Async<void> waitForAll(std::vector<Task> tasks) {
  for (const auto& task : tasks) co_await task.ended();
}

}  // namespace

TaskGroup::TaskGroup(Executor executor) : executor_(std::move(executor)) {}

TaskGroup::~TaskGroup() { cancelAll(); }

Task TaskGroup::spawn(std::function<Async<void>(std::stop_token)> body) {
  if (isClosed_) return {};
  std::erase_if(running_, [](const Task& task) { return task.isDone(); });
  return running_.emplace_back(Task::spawn(executor_, std::move(body)));
}

void TaskGroup::cancelAll() const {
  for (const auto& task : running_) task.cancel();
}

void TaskGroup::close() {
  isClosed_ = true;
  cancelAll();
}

Async<void> TaskGroup::wait() const { return waitForAll(running_); }

}  // namespace zelnor::tasks
