#pragma once

#include <atomic>
#include <utility>

#include <asio/co_spawn.hpp>
#include <asio/use_awaitable.hpp>

#include "bench/Stopwatch.h"
#include "search/SearchSource.h"

namespace zelnor::bench {

/// Asks another source and takes down how long that one takes, less the way to the main thread and
/// back.
class TimedSource final : public SearchSource {
 public:
  /// `source` outlives this one; it is asked on `pool`.
  TimedSource(SearchSource& source, tasks::Executor pool)
      : source_(source), pool_(std::move(pool)) {}

  tasks::Async<SearchPage> search(SearchQuery query, std::int64_t limit, std::int64_t offset,
                                  std::stop_token stop) override {
    const auto ask = [&]() { return source_.search(query, limit, offset, stop); };
    co_return co_await timed<SearchPage>(ask);
  }
  tasks::Async<std::int64_t> searchCount(SearchQuery query, std::stop_token stop) override {
    const auto ask = [&]() { return source_.searchCount(query, stop); };
    co_return co_await timed<std::int64_t>(ask);
  }

  /// The seconds since it was last asked.
  double takeSeconds() { return seconds_.exchange(0); }

 private:
  template <class Answer, class Ask>
  tasks::Async<Answer> timed(const Ask& ask) {
    co_return co_await asio::co_spawn(
        pool_,
        [&]() -> tasks::Async<Answer> {
          const Stopwatch watch;
          auto asked = ask();
          auto answer = co_await std::move(asked);
          seconds_ = seconds_ + watch.seconds();
          co_return answer;
        },
        asio::use_awaitable);
  }

  SearchSource& source_;
  tasks::Executor pool_;
  std::atomic<double> seconds_{0};
};

}  // namespace zelnor::bench
