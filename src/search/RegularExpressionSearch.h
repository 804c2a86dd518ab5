#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "search/RegularExpression.h"
#include "store/FileRecord.h"

namespace zelnor {

/// How long one search by regular expression may look at names: a second, less the time to list
/// them. Ordinary expressions need a tenth of it for 50,000 names of 255 bytes.
struct MatchBudget {
  using Clock = std::chrono::steady_clock;

  Clock::duration limit = std::chrono::milliseconds(700);
  std::function<Clock::time_point()> now = Clock::now;
};

/// The records in whose name the expression is found, in their order. When the budget is used up,
/// the names not looked at yet do not match: those are the longest, on which an expression that
/// backtracks without end spends the most.
std::vector<FileRecord> matchingRecords(RegularExpression& expression,
                                        std::vector<FileRecord> records,
                                        const MatchBudget& budget = {});

}  // namespace zelnor
