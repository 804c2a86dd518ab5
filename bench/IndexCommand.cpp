#include <algorithm>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "bench/BareWalk.h"
#include "bench/Commands.h"
#include "bench/IndexMeasurements.h"
#include "bench/Statistics.h"
#include "bench/Table.h"
#include "bench/WatchedProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::bench {
namespace {

namespace fs = std::filesystem;
using Measurements = std::vector<IndexMeasurement>;

struct IndexOptions {
  std::string tree;
  std::string data;
  int repeat = 1;
  bool skipsPlainWay = false;
  bool json = false;
};

/// Runs `work` in a process of its own and adds what only an observer sees.
Measurements measured(const std::function<Measurements()>& work, const std::string& log) {
  const auto run = runWatched([&] { return nlohmann::ordered_json(work()); }, log);
  auto measurements = run.answer.get<Measurements>();
  for (auto& measurement : measurements) {
    measurement.peakAnonymousBytes = run.peakAnonymousBytes;
    measurement.peakLogBytes = run.peakFileBytes;
  }
  return measurements;
}

/// One run of everything. The rebuilt index is left in `data`; the others are made and removed
/// below it.
class IndexRun {
 public:
  IndexRun(const IndexOptions& options, std::string data)
      : options_(options), data_(std::move(data)), reference_(data_ + "/reference") {}

  Measurements measureAll() {
    removeIndexes();
    const auto& tree = options_.tree;
    measure([&] { return measureBareWalk(tree); });
    measure([&] { return measureEnumerator(tree); });
    measure([&] { return measureScanner(tree); });
    if (!options_.skipsPlainWay) {
      measure([&] { return measurePlainWriting(tree, reference_); }, logPath(reference_));
      fs::remove_all(reference_);
    }
    measure([&] { return measureRebuild(tree, data_); }, logPath(data_));
    measureClearingOfCopy();
    return std::move(measurements_);
  }

 private:
  void measure(const std::function<Measurements()>& work, const std::string& log = {}) {
    const auto results = measured(work, log);
    for (const auto& result : results) {
      std::cerr << result.name << ": " << fixed(result.seconds, /*digits=*/2) << " s\n";
    }
    measurements_.insert(measurements_.end(), results.begin(), results.end());
  }
  void measureClearingOfCopy() {
    fs::create_directories(reference_);
    fs::copy_file(data_ + "/index.sqlite", reference_ + "/index.sqlite");
    measure([&] { return measureClearing(reference_); }, logPath(reference_));
    fs::remove_all(reference_);
  }
  void removeIndexes() const {
    fs::remove_all(reference_);
    for (const auto* suffix : {"", "-wal", "-shm"}) fs::remove(data_ + "/index.sqlite" + suffix);
  }

  const IndexOptions& options_;
  std::string data_;
  std::string reference_;
  Measurements measurements_;
};

/// The median time of the runs, and of everything else the most.
Measurements summary(const std::vector<Measurements>& runs) {
  Measurements result = runs.front();
  for (std::size_t i = 0; i < result.size(); ++i) {
    std::vector<double> seconds;
    for (const auto& run : runs) {
      const auto& one = run.at(i);
      seconds.push_back(one.seconds);
      result[i].databaseBytes = std::max(result[i].databaseBytes, one.databaseBytes);
      result[i].logBytes = std::max(result[i].logBytes, one.logBytes);
      result[i].peakLogBytes = std::max(result[i].peakLogBytes, one.peakLogBytes);
      result[i].peakAnonymousBytes = std::max(result[i].peakAnonymousBytes, one.peakAnonymousBytes);
    }
    result[i].seconds = median(std::move(seconds));
  }
  return result;
}

std::string table(const Measurements& measurements) {
  Table table(
      {"", "seconds", "rows", "rows/s", "ratio", "anon MB", "db MB", "log MB", "peak log MB"});
  for (const auto& one : measurements) {
    const auto ofIndex = [&](std::int64_t bytes) {
      return one.databaseBytes > 0 ? megabytes(bytes) : "-";
    };
    table.add({one.name, fixed(one.seconds, /*digits=*/2), std::to_string(one.rows),
               fixed(static_cast<double>(one.rows) / one.seconds, /*digits=*/0),
               one.ratio > 0 ? fixed(one.ratio, /*digits=*/2) : "-",
               megabytes(one.peakAnonymousBytes), ofIndex(one.databaseBytes), ofIndex(one.logBytes),
               ofIndex(one.peakLogBytes)});
  }
  return table.text();
}

void print(const Measurements& measurements, const IndexOptions& options) {
  if (!options.json) {
    std::cout << table(measurements);
    return;
  }
  const nlohmann::ordered_json json = {
      {"tree", options.tree}, {"repeat", options.repeat}, {"measurements", measurements}};
  std::cout << json.dump(/*indent=*/2) << "\n";
}

void run(const IndexOptions& options) {
  std::optional<test::TemporaryFolder> temporary;
  if (options.data.empty()) temporary.emplace();
  const auto data = temporary ? temporary->path() : options.data;
  fs::create_directories(data);
  if (!fs::is_empty(data)) throw std::runtime_error(data + " is not empty");

  bareWalk(options.tree);  // What the first walk reads from the disk the later ones find in memory.
  std::vector<Measurements> runs;
  runs.reserve(static_cast<std::size_t>(options.repeat));
  for (int i = 0; i < options.repeat; ++i) runs.push_back(IndexRun(options, data).measureAll());
  auto result = summary(runs);
  setRatios(result);
  print(result, options);
}

}  // namespace

void addIndexCommand(CLI::App& program) {
  const auto options = std::make_shared<IndexOptions>();
  auto* const command =
      program.add_subcommand("index", "Compare ways to index a tree, each in a process of its own");
  command->add_option("DIR", options->tree, "The tree")->required()->check(CLI::ExistingDirectory);
  command->add_option("--data", options->data,
                      "Where to make the indexes, and leave the rebuilt one; empty or missing");
  command->add_option("--repeat", options->repeat, "Runs, of which medians are shown")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  command->add_flag("--skip-plain", options->skipsPlainWay,
                    "Leave out the plain way of writing, the slowest of all");
  command->add_flag("--json", options->json, "Print JSON");
  command->callback([options] { run(*options); });
}

}  // namespace zelnor::bench
