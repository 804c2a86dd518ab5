#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <stop_token>
#include <vector>

#include "search/RegularExpression.h"
#include "store/FileRecord.h"
#include "tasks/Async.h"

namespace zelnor {

/// The processor time that the calling thread has used.
std::chrono::nanoseconds processorTimeOfThread();

/// What one search by regular expression may spend. Processor time, because a busy machine, or one
/// that was asleep, must not find less.
///
/// Ordinary expressions need 0.1 s for 50,000 names; those that backtrack may take minutes for one.
/// So names are looked at in rounds: the first gives each only a moment, the next begin again with
/// those that need longer, so that none of these takes the time of the others.
struct MatchBudget {
  /// Of all threads together, for each round: names that altogether take no longer are all looked
  /// at to the end. When a round has used it up, no other follows.
  std::chrono::nanoseconds processorTime = std::chrono::seconds(5);
  /// After so many ticks (see RegularExpression::Patience), about 1.5 s, a name is given up.
  std::int32_t ticksPerName = 10'000;
  /// How the time is measured; called on each thread that looks at names.
  std::function<std::chrono::nanoseconds()> timeOfThread = processorTimeOfThread;
};

/// The records in whose name an expression is found, in their order.
struct MatchingRecords {
  std::vector<FileRecord> records;
  bool isIncomplete = false;  ///< names were given up, which may match or not
};

/// Looks for `expression` in the names of `records`, on as many threads of `executor` as there are
/// processors, if it has them. Once `stop` is requested it ends, also in the middle of a name, and
/// throws `tasks::cancelled()`.
tasks::Async<MatchingRecords> matchingRecords(RegularExpression expression,
                                              std::vector<FileRecord> records,
                                              tasks::Executor executor, MatchBudget budget,
                                              std::stop_token stop);

}  // namespace zelnor
