#include "tasks/Task.h"

#include <exception>
#include <utility>

#include <asio/co_spawn.hpp>
#include <asio/detached.hpp>
#include <asio/post.hpp>

#include "tasks/Cancellation.h"
#include "tasks/Completion.h"

namespace zelnor::tasks {

struct Task::State {
  std::stop_source stop;
  std::shared_ptr<Completion<bool>> ended = std::make_shared<Completion<bool>>();
};

namespace {

/// Settles the completion however the work ends; also when it is destroyed before or while it runs.
class Ending {
 public:
  explicit Ending(std::shared_ptr<Completion<bool>> completion)
      : completion_(std::move(completion)) {}
  Ending(const Ending&) = delete;
  Ending& operator=(const Ending&) = delete;
  ~Ending() {
    if (!completion_->isSet()) {
      completion_->fail(std::make_exception_ptr(cancelled()));
    }
  }
  Completion<bool>& operator*() const { return *completion_; }

 private:
  std::shared_ptr<Completion<bool>> completion_;
};

Async<void> runToEnd(std::shared_ptr<Ending> ending, std::stop_token token,
                     std::function<Async<void>(std::stop_token)> body) {
  std::exception_ptr failure;
  try {
    co_await body(std::move(token));
  } catch (...) {
    failure = std::current_exception();
  }
  body = nullptr;  // whoever waits may destroy what it refers to
  if (failure) {
    (**ending).fail(failure);
  } else {
    (**ending).set(true);
  }
}

}  // namespace

Task Task::spawn(const Executor& executor, std::function<Async<void>(std::stop_token)> body) {
  Task task;
  task.state_ = std::make_shared<State>();
  // co_spawn alone would run the first step inside this call if the caller is on the same thread
  // pool.
  asio::post(executor, [executor, ending = std::make_shared<Ending>(task.state_->ended),
                        token = task.state_->stop.get_token(), body = std::move(body)]() mutable {
    asio::co_spawn(executor, runToEnd(std::move(ending), std::move(token), std::move(body)),
                   asio::detached);
  });
  return task;
}

void Task::cancel() const {
  if (state_) state_->stop.request_stop();
}

bool Task::isCancelled() const { return state_ && state_->stop.stop_requested(); }

bool Task::isDone() const { return state_ && state_->ended->isSet(); }

// Both may outlive this handle.
Async<void> Task::wait() const { return waitFor(state_); }

Async<void> Task::ended() const { return waitForEnd(state_); }

Async<void> Task::waitFor(std::shared_ptr<State> state) {
  if (state) co_await Completion<bool>::wait(state->ended);
}

Async<void> Task::waitForEnd(std::shared_ptr<State> state) {
  try {
    co_await waitFor(state);
  } catch (...) {  // NOLINT(bugprone-empty-catch): how it ended is the business of whoever started
                   // it
  }
}

}  // namespace zelnor::tasks
