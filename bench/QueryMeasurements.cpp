#include "bench/QueryMeasurements.h"

#include <functional>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "bench/Stopwatch.h"
#include "search/SearchStatements.h"

namespace zelnor::bench {
namespace {

constexpr int kFewestRuns = 5;

double timed(const std::function<void()>& work) {
  const Stopwatch watch;
  work();
  return watch.seconds();
}

nlohmann::ordered_json json(const Statistics& statistics) {
  return {{"median", statistics.median}, {"p95", statistics.p95}, {"p99", statistics.p99}};
}

nlohmann::ordered_json json(const Comparison& comparison) {
  nlohmann::ordered_json result = {{"engine", json(comparison.engine)}};
  if (comparison.bare) {
    result["bare"] = json(*comparison.bare);
    result["ratio"] = comparison.ratio();
  }
  return result;
}

}  // namespace

std::int64_t QueryRunner::page(const SearchQuery& query) {
  return static_cast<std::int64_t>(
      loop_.await(engine_.search(query, kPageSize, /*offset=*/0)).size());
}

std::int64_t QueryRunner::count(const SearchQuery& query) {
  return loop_.await(engine_.searchCount(query));
}

QueryMeasurement QueryRunner::measure(const QueryCase& queryCase) {
  const auto& query = queryCase.query;
  const bool isRegularExpression = query.mode.kind == SearchMode::Kind::regex;
  QueryMeasurement result;
  result.name = queryCase.name;
  result.text = query.text;
  result.matches = isRegularExpression ? page(query) : count(query);

  const auto enginePage = [&] { page(query); };
  if (isRegularExpression) {
    result.page = compareInTurns(enginePage, /*bare=*/{}, result.runs);
    return result;
  }
  // The text of the statement is part of what the engine does, not of what SQLite does.
  const auto pageStatement = buildSearchSQL(query, kPageSize, /*offset=*/0);
  result.page = compareInTurns(enginePage, [&] { bare_.rows(pageStatement); }, result.runs);
  const auto countStatement = buildCountSQL(query);
  int countRuns = 0;
  result.count =
      compareInTurns([&] { count(query); }, [&] { bare_.number(countStatement); }, countRuns);
  return result;
}

/// Both in one loop, each as often first as second, so that both meet the same caches and the same
/// other load.
Comparison QueryRunner::compareInTurns(const std::function<void()>& engine,
                                       const std::function<void()>& bare, int& runs) const {
  std::vector<double> engineTimes;
  std::vector<double> bareTimes;
  engine();
  if (bare) bare();
  const Stopwatch spent;
  for (runs = 0; runs < effort_.runs; ++runs) {
    if (runs >= kFewestRuns && spent.seconds() > effort_.secondsPerQuery) break;
    const bool engineFirst = runs % 2 == 0;
    if (engineFirst) engineTimes.push_back(timed(engine));
    if (bare) bareTimes.push_back(timed(bare));
    if (!engineFirst) engineTimes.push_back(timed(engine));
  }
  Comparison comparison{.engine = Statistics::of(std::move(engineTimes)), .bare = std::nullopt};
  if (bare) comparison.bare = Statistics::of(std::move(bareTimes));
  return comparison;
}

void to_json(nlohmann::ordered_json& result, const QueryMeasurement& measurement) {
  result = {{"name", measurement.name},
            {"text", measurement.text},
            {"matches", measurement.matches},
            {"runs", measurement.runs},
            {"page", json(measurement.page)}};
  if (measurement.count) result["count"] = json(*measurement.count);
}

}  // namespace zelnor::bench
