#include "bench/LiveMeasurements.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <stdexcept>
#include <thread>
#include <utility>

#include "bench/CreationStorm.h"
#include "bench/IndexProbe.h"
#include "bench/LatencyChanges.h"
#include "bench/SearchLoad.h"
#include "bench/Stopwatch.h"
#include "bench/TreeMaker.h"
#include "bench/WatchedProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::bench {
namespace {

namespace fs = std::filesystem;

constexpr double kMilli = 1e3;
constexpr double kMega = 1e6;

void sleepFor(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

double cpuSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + (static_cast<double>(time.tv_nsec) * 1e-9);
}

/// When the files below `folder` were last written. Memory that readers share counts as none.
std::map<std::string, fs::file_time_type> writeTimes(const std::string& folder) {
  std::map<std::string, fs::file_time_type> times;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.path().native().ends_with("-shm")) times[entry.path()] = entry.last_write_time();
  }
  return times;
}

/// Everything that happens to one followed index, in the order in which it is measured.
class LiveRun {
 public:
  LiveRun(const std::string& tree, const std::string& scratch, const std::string& data,
          const LiveEffort& effort)
      : scratch_(scratch),
        data_(data),
        effort_(effort),
        random_(effort.seed),
        changes_(scratch + "/changes", effort.changes),
        index_(data, effort.source),
        probe_(data) {
    index_.build({tree, scratch});
    waitForWhatCameBefore();
    searches_ = searchesFor(data);
  }

  Figures measureAll() {
    add("folders followed live", "", static_cast<double>(index_.folders().live));
    add("folders swept", "", static_cast<double>(index_.folders().swept));
    measureLatency();
    measureIdleSearches();
    measureStorm();
    measureUnpacking();
    measureMove();
    measureIdleness();
    add("full rebuilds", "", index_.automaticRebuilds());
    return std::move(figures_);
  }

 private:
  /// Changes are applied in the order in which they were noticed: once the index shows one that is
  /// made now, all that was noticed before it is there too, like what the first comparison found.
  void waitForWhatCameBefore() {
    std::ofstream(scratch_ + "/last before measuring").flush();
    if (!probe_.untilCorrect(scratch_, Stopwatch())) {
      throw std::runtime_error("the index does not become what is on disk");
    }
    index_.settle();
  }

  void add(const std::string& name, const std::string& unit, std::optional<double> value) {
    figures_.push_back({.name = name, .unit = unit, .value = value});
    std::cerr << name << "\n";
  }
  void addSearches(const std::string& when, const Statistics& times) {
    add("search " + when + ": median", "ms", times.median * kMilli);
    add("search " + when + ": p95", "ms", times.p95 * kMilli);
  }

  void measureLatency() {
    const auto times = Statistics::of(changes_.run(probe_, random_));
    add("one change: median", "s", times.median);
    add("one change: p95", "s", times.p95);
  }

  void measureIdleSearches() {
    SearchLoad searches(data_, searches_);
    sleepFor(effort_.seconds);
    idle_ = searches.stop();
    addSearches("of the idle index", idle_);
  }

  /// Until the index has caught up with `change`.
  void measureChange(const std::string& name, const std::function<void()>& change) {
    const Stopwatch making;
    change();
    const auto made = making.seconds();
    const Stopwatch sinceLast;
    const auto correct = probe_.untilCorrect(scratch_, sinceLast);
    add(name + ": made in", "s", made);
    add(name + ": index correct after the last", "s", correct);
  }

  /// The same while somebody searches.
  void measureBurst(const std::string& name, const std::function<void()>& change) {
    SearchLoad searches(data_, searches_);
    measureChange(name, change);
    const auto times = searches.stop();
    addSearches("during " + name, times);
    if (idle_.p95 > 0) add("search during " + name + ": p95 / idle", "", times.p95 / idle_.p95);
  }

  void measureStorm() {
    const CreationStorm storm{
        .folder = scratch_ + "/storm", .perSecond = effort_.perSecond, .seconds = effort_.seconds};
    measureBurst("storm of creations", [&] { storm.run(random_); });
  }
  void measureUnpacking() {
    measureBurst("unpacking", [&] {
      makeTree(scratch_ + "/unpacked", TreePlan(effort_.entries, effort_.seed));
    });
  }
  void measureMove() {
    const auto unpacked = scratch_ + "/unpacked";
    const auto moved = scratch_ + "/moved";
    measureChange("moving the unpacked", [&] { fs::rename(unpacked, moved); });
    measureBurst("moving it back", [&] { fs::rename(moved, unpacked); });
  }

  void measureIdleness() {
    index_.settle();
    const auto written = writeTimes(data_);
    const auto used = cpuSeconds();
    sleepFor(effort_.idleSeconds);
    add("idle: CPU time", "s", cpuSeconds() - used);
    add("idle: data and settings written", "", writeTimes(data_) == written ? 0 : 1);
  }

  std::string scratch_;
  std::string data_;
  LiveEffort effort_;
  Random random_;
  LatencyChanges changes_;
  FollowedIndex index_;
  IndexProbe probe_;
  std::vector<SearchQuery> searches_;
  Statistics idle_;
  Figures figures_;
};

/// Many folders of ten folders each, as deep as it takes.
void makeFolders(const std::string& parent, std::uint64_t count) {
  constexpr std::uint64_t kPerFolder = 10;
  std::vector<std::string> made{parent};
  for (std::uint64_t i = 0; i < count; ++i) {
    made.push_back(made[i / kPerFolder] + "/" + std::to_string(i));
    fs::create_directory(made.back());
  }
}

struct FollowingMemory {
  double settled = 0;
  double peak = 0;
  double folders = 0;
};

/// Opens the index in `data` and follows `root`; bytes.
FollowingMemory memoryOfFollowing(const std::string& data, const std::string& root,
                                  FollowedIndex::Source source) {
  const auto run = runWatched([&] {
    FollowedIndex index(data, source);
    index.follow({root});
    return nlohmann::ordered_json{{"bytes", ownAnonymousBytes()},
                                  {"folders", index.folders().live}};
  });
  const auto settled = run.answer["bytes"].get<double>();
  return {.settled = settled,
          .peak = std::max(settled, static_cast<double>(run.peakAnonymousBytes)),
          .folders = run.answer["folders"].get<double>()};
}

}  // namespace

Figures measureLive(const std::string& tree, const LiveEffort& effort) {
  const test::TemporaryFolder scratch;
  const test::TemporaryFolder data;
  const auto run = runWatched([&] {
    return nlohmann::ordered_json(LiveRun(tree, scratch.path(), data.path(), effort).measureAll());
  });
  return run.answer.get<Figures>();
}

Figures measureMemoryOfFollowing(const LiveEffort& effort) {
  const test::TemporaryFolder folders;
  const test::TemporaryFolder nothing;
  const test::TemporaryFolder data;
  makeFolders(folders.path(), effort.folders);
  runWatched([&] {
    FollowedIndex(data.path(), effort.source).build({folders.path()});
    return nlohmann::ordered_json();
  });
  const auto none = memoryOfFollowing(data.path(), nothing.path(), effort.source);
  const auto all = memoryOfFollowing(data.path(), folders.path(), effort.source);
  return {{.name = "memory: folders followed live", .unit = "", .value = all.folders},
          {.name = "memory for them", .unit = "MB", .value = (all.settled - none.settled) / kMega},
          {.name = "memory for them, at most while starting",
           .unit = "MB",
           .value = (all.peak - none.peak) / kMega}};
}

}  // namespace zelnor::bench
