#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include <nlohmann/json_fwd.hpp>

#include "bench/BareSearch.h"
#include "bench/QueryCases.h"
#include "bench/Statistics.h"
#include "search/SearchEngine.h"
#include "tasks/RunLoop.h"

namespace zelnor::bench {

/// One operation, through the engine and as bare SQL; seconds.
struct Comparison {
  Statistics engine;   ///< on one thread, as the bare SQL is
  Statistics awaited;  ///< by a main thread, of the engine on a pool: with two changes of threads
  std::optional<Statistics> bare;  ///< nothing where the engine does what SQL cannot

  /// How many times the engine takes the bare time, by medians; 0 without a bare time.
  [[nodiscard]] double ratio() const {
    return bare && bare->median > 0 ? engine.median / bare->median : 0;
  }
};

struct QueryMeasurement {
  std::string name;
  std::string text;
  std::int64_t matches = 0;
  int runs = 0;
  Comparison page;
  std::optional<Comparison> count;  ///< nothing for a regular expression: its list is complete
};

void to_json(nlohmann::ordered_json& result, const QueryMeasurement& measurement);

/// Measures searches on an engine whose database is on `pool`, a single thread.
class QueryRunner {
 public:
  static constexpr std::int64_t kPageSize = 200;

  /// Each query runs `runs` times, or fewer once `secondsPerQuery` have passed, but a few times at
  /// least.
  struct Effort {
    int runs = 100;
    double secondsPerQuery = 5;
  };

  QueryRunner(SearchEngine& engine, tasks::Executor pool, const BareSearch& bare,
              tasks::RunLoop& loop, Effort effort)
      : engine_(engine), pool_(std::move(pool)), bare_(bare), loop_(loop), effort_(effort) {}

  QueryMeasurement measure(const QueryCase& queryCase);

 private:
  using Search = std::function<tasks::Async<std::int64_t>()>;

  tasks::Async<std::int64_t> page(SearchQuery query);
  tasks::Async<double> timedOnPool(const Search& search) const;
  Comparison compareInTurns(const Search& engine, const std::function<void()>& bare,
                            int& runs) const;

  SearchEngine& engine_;
  tasks::Executor pool_;
  const BareSearch& bare_;
  tasks::RunLoop& loop_;
  Effort effort_;
};

}  // namespace zelnor::bench
