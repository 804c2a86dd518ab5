#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "bench/BareSearch.h"
#include "bench/Commands.h"
#include "bench/QueryCases.h"
#include "bench/QueryMeasurements.h"
#include "bench/Table.h"
#include "search/SearchEngine.h"
#include "search/SearchStatements.h"
#include "store/DatabaseManager.h"
#include "tasks/RunLoop.h"
#include "tasks/ThreadPool.h"

namespace zelnor::bench {
namespace {

struct QueryOptions {
  std::string data;
  QueryRunner::Effort effort;
  bool json = false;
};

std::string milliseconds(double seconds) { return fixed(seconds * 1000, /*digits=*/2); }

std::vector<QueryCase> casesFor(const BareSearch& bare) {
  const auto names = bare.sampleOfNames();
  return queryCases(SampleTerms::of(names), [&](const std::string& text) {
    return bare.number(buildCountSQL(SearchQuery::parsed(text))) > 0;
  });
}

std::vector<QueryMeasurement> measureAll(const QueryOptions& options) {
  tasks::RunLoop loop;
  const tasks::ThreadPool pool(1);
  DatabaseManager database(options.data, pool.executor(), DatabaseManager::Access::readOnly);
  const tasks::ThreadPool matchers(tasks::processorCount());
  SearchEngine engine(database, matchers.executor());
  const BareSearch bare(options.data);

  QueryRunner runner(engine, pool.executor(), bare, loop, options.effort);
  std::vector<QueryMeasurement> measurements;
  for (const auto& queryCase : casesFor(bare)) {
    measurements.push_back(runner.measure(queryCase));
    std::cerr << queryCase.name << "\n";
  }
  return measurements;
}

/// One operation of all queries, in milliseconds.
std::string table(const std::vector<QueryMeasurement>& measurements, const std::string& title,
                  std::optional<Comparison> (*operation)(const QueryMeasurement&)) {
  Table table({title, "query", "matches", "median", "p95", "p99", "bare median", "p95", "p99",
               "ratio", "awaited median", "p95", "p99"});
  for (const auto& one : measurements) {
    const auto times = operation(one);
    if (!times) continue;
    const auto bare = times->bare.value_or(Statistics{});
    const auto orNothing = [&](const std::string& text) { return times->bare ? text : "-"; };
    table.add({one.name, one.text, std::to_string(one.matches), milliseconds(times->engine.median),
               milliseconds(times->engine.p95), milliseconds(times->engine.p99),
               orNothing(milliseconds(bare.median)), orNothing(milliseconds(bare.p95)),
               orNothing(milliseconds(bare.p99)), orNothing(fixed(times->ratio(), /*digits=*/3)),
               milliseconds(times->awaited.median), milliseconds(times->awaited.p95),
               milliseconds(times->awaited.p99)});
  }
  return table.text();
}

void runQuery(const QueryOptions& options) {
  const auto measurements = measureAll(options);
  if (options.json) {
    const nlohmann::ordered_json json = {{"data", options.data},
                                         {"unit", "seconds"},
                                         {"pageSize", QueryRunner::kPageSize},
                                         {"queries", measurements}};
    std::cout << json.dump(/*indent=*/2, ' ', /*ensure_ascii=*/false,
                           nlohmann::ordered_json::error_handler_t::replace)
              << "\n";
    return;
  }
  std::cout << table(measurements, "first page, ms", [](const QueryMeasurement& one) {
    return std::optional(one.page);
  }) << "\n" << table(measurements, "count, ms", [](const QueryMeasurement& one) {
    return one.count;
  });
}

}  // namespace

void addQueryCommand(CLI::App& program) {
  const auto options = std::make_shared<QueryOptions>();
  auto* const command =
      program.add_subcommand("query", "Measure searches, through the engine and as bare SQL");
  command->add_option("DIR", options->data, "A data folder, with an index in it")
      ->required()
      ->check(CLI::ExistingDirectory);
  command->add_option("--runs", options->effort.runs, "How often each query runs at most")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  command
      ->add_option("--seconds", options->effort.secondsPerQuery,
                   "When to stop repeating a slow query")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  command->add_flag("--json", options->json, "Print JSON");
  command->callback([options] { runQuery(*options); });
}

}  // namespace zelnor::bench
