#include "search/RegularExpressionSearch.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace zelnor {

namespace {

std::vector<std::size_t> shortestNameFirst(const std::vector<FileRecord>& records) {
  std::vector<std::size_t> order(records.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, [&](std::size_t left, std::size_t right) {
    return records[left].name.size() < records[right].name.size();
  });
  return order;
}

}  // namespace

std::vector<FileRecord> matchingRecords(RegularExpression& expression,
                                        std::vector<FileRecord> records,
                                        const MatchBudget& budget) {
  const auto deadline = budget.now() + budget.limit;
  std::vector<std::size_t> found;
  for (const auto index : shortestNameFirst(records)) {
    if (budget.now() >= deadline) break;
    if (expression.isFoundIn(records[index].name)) found.push_back(index);
  }
  std::ranges::sort(found);

  std::vector<FileRecord> matches;
  matches.reserve(found.size());
  for (const auto index : found) matches.push_back(std::move(records[index]));
  return matches;
}

}  // namespace zelnor
