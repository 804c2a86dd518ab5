#include "tasks/Clock.h"

#include <memory>

#include <asio/co_spawn.hpp>
#include <asio/post.hpp>
#include <asio/redirect_error.hpp>
#include <asio/steady_timer.hpp>
#include <asio/strand.hpp>
#include <asio/use_awaitable.hpp>

namespace zelnor::tasks {

namespace {

Async<bool> sleepOn(asio::strand<Executor> strand, Clock::Duration duration, std::stop_token stop) {
  const auto timer = std::make_shared<asio::steady_timer>(strand, duration);
  // A timer is not safe to touch from two threads: the cancellation goes through the strand too, so
  // that it can only run after the wait below has begun.
  const std::stop_callback cancelOnStop(
      stop, [strand, timer] { asio::post(strand, [timer] { timer->cancel(); }); });
  asio::error_code error;
  co_await timer->async_wait(asio::redirect_error(asio::use_awaitable, error));
  co_return !error;
}

}  // namespace

Async<bool> SteadyClock::sleep(Duration duration, std::stop_token stop) {
  const auto strand = asio::make_strand(executor_);
  co_return co_await asio::co_spawn(strand, sleepOn(strand, duration, std::move(stop)),
                                    asio::use_awaitable);
}

}  // namespace zelnor::tasks
