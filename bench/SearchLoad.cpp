#include "bench/SearchLoad.h"

#include <chrono>
#include <utility>

#include "bench/BareSearch.h"
#include "bench/SampleTerms.h"
#include "bench/Stopwatch.h"
#include "search/SearchEngine.h"
#include "store/DatabaseManager.h"
#include "tasks/RunLoop.h"
#include "tasks/ThreadPool.h"

namespace zelnor::bench {
namespace {

constexpr std::int64_t kPageSize = 200;
constexpr std::chrono::milliseconds kPause{50};

}  // namespace

std::vector<SearchQuery> searchesFor(const std::string& data) {
  const auto names = BareSearch(data).sampleOfNames();
  const auto terms = SampleTerms::of(names);
  std::vector<SearchQuery> queries;
  for (const auto& text : {terms.common, terms.rare, terms.common.substr(0, 2), terms.cjk}) {
    if (!text.empty()) queries.push_back(SearchQuery::parsed(text));
  }
  queries.push_back(SearchQuery::parsed("*." + terms.extension));
  return queries;
}

SearchLoad::SearchLoad(std::string data, std::vector<SearchQuery> queries)
    : data_(std::move(data)),
      queries_(std::move(queries)),
      thread_([this](const std::stop_token& stop) { run(stop); }) {}

Statistics SearchLoad::stop() {
  thread_.request_stop();
  thread_.join();
  return Statistics::of(std::move(times_));
}

void SearchLoad::run(const std::stop_token& stop) {
  tasks::RunLoop loop;
  const tasks::ThreadPool pool(2);
  DatabaseManager database(data_, pool.executor(), DatabaseManager::Access::readOnly);
  SearchEngine engine(database, pool.executor());
  for (std::size_t i = 0; !stop.stop_requested(); ++i) {
    const auto& query = queries_[i % queries_.size()];
    const Stopwatch watch;
    loop.await(engine.search(query, kPageSize, /*offset=*/0, /*stop=*/{}));
    loop.await(engine.searchCount(query, /*stop=*/{}));
    times_.push_back(watch.seconds());
    std::this_thread::sleep_for(kPause);
  }
}

}  // namespace zelnor::bench
