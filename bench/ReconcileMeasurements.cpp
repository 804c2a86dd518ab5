#include "bench/ReconcileMeasurements.h"

#include <algorithm>
#include <vector>

#include "bench/BareSearch.h"
#include "bench/BareWalk.h"
#include "bench/Statistics.h"
#include "bench/Stopwatch.h"
#include "bench/WatchedProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::bench {
namespace {

constexpr double kBytesPerMegabyte = 1e6;

nlohmann::ordered_json timeBareWalk(const std::string& tree) {
  const Stopwatch watch;
  bareWalk(tree);
  return watch.seconds();
}

nlohmann::ordered_json timeReconciling(const std::string& tree, const std::string& data,
                                       FollowedIndex::Source source) {
  FollowedIndex index(data, source);
  const Stopwatch watch;
  index.follow({tree});
  const auto seconds = watch.seconds();
  return {{"seconds", seconds}, {"live", index.folders().live}, {"swept", index.folders().swept}};
}

double entriesIn(const std::string& data) {
  return static_cast<double>(
      BareSearch(data).number({.sql = "SELECT COUNT(*) FROM files", .bindings = {}}));
}

}  // namespace

Figures measureReconciling(const std::string& tree, int repeat, FollowedIndex::Source source) {
  const test::TemporaryFolder data;
  runWatched([&] {
    FollowedIndex(data.path(), source).build({tree});
    return nlohmann::ordered_json();
  });
  std::vector<double> walks;
  std::vector<double> comparisons;
  WatchedRun last;
  std::int64_t peakBytes = 0;
  for (int i = 0; i < repeat; ++i) {
    walks.push_back(runWatched([&] { return timeBareWalk(tree); }).answer.get<double>());
    last = runWatched([&] { return timeReconciling(tree, data.path(), source); });
    comparisons.push_back(last.answer["seconds"].get<double>());
    peakBytes = std::max(peakBytes, last.peakAnonymousBytes);
  }
  const auto walk = median(walks);
  const auto comparison = median(comparisons);
  return {{.name = "entries in the index", .unit = "", .value = entriesIn(data.path())},
          {.name = "folders followed live", .unit = "", .value = last.answer["live"].get<double>()},
          {.name = "folders swept", .unit = "", .value = last.answer["swept"].get<double>()},
          {.name = "bare walk", .unit = "s", .value = walk},
          {.name = "compared and followed", .unit = "s", .value = comparison},
          {.name = "how many bare walks that takes", .unit = "", .value = comparison / walk},
          {.name = "private memory at most",
           .unit = "MB",
           .value = static_cast<double>(peakBytes) / kBytesPerMegabyte}};
}

}  // namespace zelnor::bench
