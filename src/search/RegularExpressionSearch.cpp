#include "search/RegularExpressionSearch.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <ctime>
#include <memory>
#include <span>
#include <utility>

#include "tasks/Cancellation.h"
#include "tasks/Task.h"
#include "tasks/ThreadPool.h"

namespace zelnor {

namespace {

using std::chrono::nanoseconds;
using Answer = RegularExpression::Answer;

/// What a name gets in the rounds before the last: 1.5 ms, 45 ms.
constexpr std::array<std::int32_t, 2> kTicksInFirstRounds{10, 300};
/// Names that a thread takes at a time.
constexpr std::size_t kPortion = 64;

/// What the threads of a search share. Each answer is written by one thread.
struct Names {
  RegularExpression expression;
  std::vector<FileRecord> records;
  MatchBudget budget;
  std::stop_token stop;
  std::vector<Answer> answers = std::vector<Answer>(records.size(), Answer::givenUp);

  /// The names without an answer, the shortest first: the longest are those on which an expression
  /// that backtracks without end spends the most.
  [[nodiscard]] std::vector<std::size_t> unanswered() const {
    std::vector<std::size_t> left;
    for (std::size_t index = 0; index < answers.size(); ++index) {
      if (answers[index] == Answer::givenUp) left.push_back(index);
    }
    std::ranges::stable_sort(left, {}, [&](auto index) { return records[index].name.size(); });
    return left;
  }
};

/// A look at all names without an answer. Shared by the threads that work on it.
class Round {
 public:
  Round(Names& names, std::int32_t ticksPerName)
      : names_(names), ticksPerName_(ticksPerName), waiting_(names.unanswered()) {}

  /// Takes part until no name is left or nothing may be spent any more.
  void work() {
    auto expression = names_.expression.clone();
    Spending spending(*this);
    const RegularExpression::Patience patience = [&](std::int32_t ticks) {
      return ticks < ticksPerName_ && spending.mayGoOn();
    };
    for (auto portion = nextPortion(); !portion.empty(); portion = nextPortion()) {
      for (const auto index : portion) {
        if (names_.stop.stop_requested()) return;
        names_.answers[index] = expression.lookIn(names_.records[index].name, patience);
      }
      if (!spending.mayGoOn()) return;
    }
  }

  [[nodiscard]] std::size_t portions() const { return (waiting_.size() + kPortion - 1) / kPortion; }
  [[nodiscard]] bool isSpent() const {
    return nanoseconds(spent_.load()) >= names_.budget.processorTime;
  }

 private:
  /// Adds what one thread spends to the round's account.
  class Spending {
   public:
    explicit Spending(Round& round) : round_(round), before_(round.names_.budget.timeOfThread()) {}
    bool mayGoOn() {
      const auto now = round_.names_.budget.timeOfThread();
      round_.spent_ += (now - std::exchange(before_, now)).count();
      return !round_.isSpent() && !round_.names_.stop.stop_requested();
    }

   private:
    Round& round_;
    nanoseconds before_;
  };

  std::span<const std::size_t> nextPortion() {
    const auto begin = std::min(next_.fetch_add(kPortion), waiting_.size());
    return std::span(waiting_).subspan(begin, std::min(kPortion, waiting_.size() - begin));
  }

  Names& names_;
  std::int32_t ticksPerName_;
  std::vector<std::size_t> waiting_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<nanoseconds::rep> spent_ = 0;
};

/// Has several threads work on the round; answers whether there was time for all of it.
tasks::Async<bool> carryOut(const std::shared_ptr<Names>& names, std::int32_t ticksPerName,
                            const tasks::Executor& executor) {
  const auto round = std::make_shared<Round>(*names, ticksPerName);
  std::vector<tasks::Task> workers(std::min(tasks::processorCount(), round->portions()));
  for (auto& worker : workers) {
    // Kept by each: when the executor goes away, it drops them one by one.
    worker = tasks::Task::spawn(executor, [names, round](std::stop_token) -> tasks::Async<void> {
      round->work();
      co_return;
    });
  }
  for (const auto& worker : workers) co_await worker.wait();
  tasks::throwIfStopped(names->stop);
  co_return !round->isSpent();
}

MatchingRecords found(Names& names) {
  MatchingRecords matching;
  for (std::size_t index = 0; index < names.answers.size(); ++index) {
    if (names.answers[index] == Answer::found)
      matching.records.push_back(std::move(names.records[index]));
    if (names.answers[index] == Answer::givenUp) matching.isIncomplete = true;
  }
  return matching;
}

}  // namespace

nanoseconds processorTimeOfThread() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return std::chrono::seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

tasks::Async<MatchingRecords> matchingRecords(RegularExpression expression,
                                              std::vector<FileRecord> records,
                                              tasks::Executor executor, MatchBudget budget,
                                              std::stop_token stop) {
  const auto names = std::make_shared<Names>(std::move(expression), std::move(records),
                                             std::move(budget), std::move(stop));
  for (std::size_t index = 0; index < names->records.size(); ++index) {
    if (!names->expression.mayBeFoundIn(names->records[index].name))
      names->answers[index] = Answer::notFound;
  }
  bool hasTime = true;
  for (const auto ticks : kTicksInFirstRounds) {
    if (!hasTime || ticks >= names->budget.ticksPerName) break;
    hasTime = co_await carryOut(names, ticks, executor);
  }
  if (hasTime) co_await carryOut(names, names->budget.ticksPerName, executor);
  co_return found(*names);
}

}  // namespace zelnor
