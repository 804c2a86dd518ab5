#include "bench/QueryMeasurements.h"

#include <functional>
#include <utility>
#include <vector>

#include <asio/co_spawn.hpp>
#include <asio/use_awaitable.hpp>
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
  nlohmann::ordered_json result = {{"engine", json(comparison.engine)},
                                   {"awaited", json(comparison.awaited)}};
  if (comparison.bare) {
    result["bare"] = json(*comparison.bare);
    result["ratio"] = comparison.ratio();
  }
  return result;
}

}  // namespace

tasks::Async<std::int64_t> QueryRunner::page(SearchQuery query) {
  auto search = engine_.search(std::move(query), kPageSize, /*offset=*/0, /*stop=*/{});
  const auto page = co_await std::move(search);
  co_return static_cast<std::int64_t>(page.results.size());
}

tasks::Async<double> QueryRunner::timedOnPool(const Search& search) const {
  co_return co_await asio::co_spawn(
      pool_,
      [&search]() -> tasks::Async<double> {
        const Stopwatch watch;
        co_await search();
        co_return watch.seconds();
      },
      asio::use_awaitable);
}

QueryMeasurement QueryRunner::measure(const QueryCase& queryCase) {
  const auto& query = queryCase.query;
  const bool isRegularExpression = query.mode.kind == SearchMode::Kind::regex;
  QueryMeasurement result;
  result.name = queryCase.name;
  result.text = query.text;
  const Search enginePage = [&] { return page(query); };
  const Search engineCount = [&] { return engine_.searchCount(query, /*stop=*/{}); };
  result.matches = loop_.await(isRegularExpression ? enginePage() : engineCount());

  if (isRegularExpression) {
    result.page = compareInTurns(enginePage, /*bare=*/{}, result.runs);
    return result;
  }
  // The text of the statement is part of what the engine does, not of what SQLite does.
  const auto pageStatement = buildSearchSQL(query, kPageSize, /*offset=*/0);
  result.page = compareInTurns(enginePage, [&] { bare_.rows(pageStatement); }, result.runs);
  const auto countStatement = buildCountSQL(query);
  int countRuns = 0;
  result.count = compareInTurns(engineCount, [&] { bare_.number(countStatement); }, countRuns);
  return result;
}

/// All in one loop, engine and bare each as often first as second, so that they meet the same
/// caches and the same other load.
Comparison QueryRunner::compareInTurns(const Search& engine, const std::function<void()>& bare,
                                       int& runs) const {
  std::vector<double> engineTimes;
  std::vector<double> awaitedTimes;
  std::vector<double> bareTimes;
  loop_.await(engine());
  if (bare) bare();
  const Stopwatch spent;
  for (runs = 0; runs < effort_.runs; ++runs) {
    if (runs >= kFewestRuns && spent.seconds() > effort_.secondsPerQuery) break;
    const bool engineFirst = runs % 2 == 0;
    if (engineFirst) engineTimes.push_back(loop_.await(timedOnPool(engine)));
    if (bare) bareTimes.push_back(timed(bare));
    if (!engineFirst) engineTimes.push_back(loop_.await(timedOnPool(engine)));
    awaitedTimes.push_back(timed([&] { loop_.await(engine()); }));
  }
  Comparison comparison{.engine = Statistics::of(std::move(engineTimes)),
                        .awaited = Statistics::of(std::move(awaitedTimes)),
                        .bare = std::nullopt};
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
