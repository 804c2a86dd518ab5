#include "tasks/Task.h"

#include <asio/co_spawn.hpp>
#include <asio/detached.hpp>
#include <asio/post.hpp>
#include <system_error>
#include <utility>

#include "tasks/Completion.h"

namespace zelnor::tasks {

struct Task::State {
  std::stop_source stop;
  std::shared_ptr<Completion<bool>> ended = std::make_shared<Completion<bool>>();
};

namespace {

/// Settles the completion even if the coroutine is destroyed while it waits.
struct EndGuard {
  explicit EndGuard(std::shared_ptr<Completion<bool>> completion) : ended(std::move(completion)) {}
  EndGuard(const EndGuard&) = delete;
  EndGuard& operator=(const EndGuard&) = delete;
  ~EndGuard() {
    if (!ended->isSet()) {
      ended->fail(std::make_exception_ptr(
          std::system_error(std::make_error_code(std::errc::operation_canceled))));
    }
  }
  std::shared_ptr<Completion<bool>> ended;
};

Async<void> runToEnd(std::shared_ptr<Completion<bool>> ended, std::stop_token token,
                     std::function<Async<void>(std::stop_token)> body) {
  const EndGuard guard(std::move(ended));
  try {
    co_await body(std::move(token));
    guard.ended->set(true);
  } catch (...) {
    guard.ended->fail(std::current_exception());
  }
}

}  // namespace

Task Task::spawn(const Executor& executor, std::function<Async<void>(std::stop_token)> body) {
  Task task;
  task.state_ = std::make_shared<State>();
  // co_spawn alone would run the first step inside this call if the caller is on the same thread pool.
  asio::post(executor, [executor, ended = task.state_->ended, token = task.state_->stop.get_token(),
                        body = std::move(body)]() mutable {
    asio::co_spawn(executor, runToEnd(std::move(ended), std::move(token), std::move(body)), asio::detached);
  });
  return task;
}

void Task::cancel() const {
  if (state_) state_->stop.request_stop();
}

bool Task::isCancelled() const { return state_ && state_->stop.stop_requested(); }

bool Task::isDone() const { return state_ && state_->ended->isSet(); }

Async<void> Task::wait() const {
  if (state_) co_await Completion<bool>::wait(state_->ended);
}

}  // namespace zelnor::tasks
