#include "bench/IndexMeasurements.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "bench/BareWalk.h"
#include "bench/FollowedIndex.h"
#include "bench/PlainWriter.h"
#include "bench/Stopwatch.h"
#include "indexer/FileIndexActor.h"
#include "indexer/FileSystemScanner.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileDefaultsStore.h"
#include "platform/UserFolders.h"
#include "store/DatabaseManager.h"
#include "tasks/RunLoop.h"
#include "tasks/ThreadPool.h"

namespace zelnor::bench {
namespace {

/// What the actor asks for: the scan, its spool and the writer at the same time.
constexpr std::size_t kScanThreads = 3;

constexpr std::string_view kBareWalk = "bare walk";
constexpr std::string_view kPlainWriting = "plain writing";

std::int64_t fileBytes(const std::string& path) {
  std::error_code missing;
  const auto size = std::filesystem::file_size(path, missing);
  return missing ? 0 : static_cast<std::int64_t>(size);
}

std::string databasePath(const std::string& data) { return data + "/index.sqlite"; }

IndexMeasurement measurement(std::string_view name, std::string_view yardstick,
                             const Stopwatch& watch, std::int64_t rows) {
  IndexMeasurement result;
  result.name = name;
  result.yardstick = yardstick;
  result.seconds = watch.seconds();
  result.rows = rows;
  return result;
}

IndexMeasurement withSizes(IndexMeasurement result, const std::string& data) {
  result.databaseBytes = fileBytes(databasePath(data));
  result.logBytes = fileBytes(logPath(data));
  return result;
}

template <class Visit>
std::int64_t visitEntries(const std::string& tree, const Visit& visit) {
  auto enumerator = platform::DirectoryEnumerator::open(tree, {});
  if (!enumerator) throw std::system_error(std::make_error_code(std::errc::not_a_directory), tree);
  std::int64_t entries = 0;
  for (; const auto entry = enumerator->next(); ++entries) visit(*entry);
  return entries;
}

tasks::Async<std::int64_t> consume(const std::shared_ptr<FileSystemScanner::Stream>& stream) {
  std::int64_t rows = 0;
  while (const auto batch = co_await stream->next())
    rows += static_cast<std::int64_t>(batch->size());
  co_return rows;
}

}  // namespace

std::string logPath(const std::string& data) { return databasePath(data) + "-wal"; }

std::vector<IndexMeasurement> measureBareWalk(const std::string& tree) {
  const Stopwatch watch;
  const auto totals = bareWalk(tree);
  return {measurement(kBareWalk, kBareWalk, watch, totals.entries)};
}

std::vector<IndexMeasurement> measureEnumerator(const std::string& tree) {
  const Stopwatch watch;
  const auto entries = visitEntries(tree, [](const auto&) {});
  return {measurement("walk", kBareWalk, watch, entries)};
}

std::vector<IndexMeasurement> measureScanner(const std::string& tree) {
  tasks::RunLoop loop;
  const tasks::ThreadPool pool(1);
  const Stopwatch watch;
  const auto scan = FileSystemScanner().scan({tree}, everythingBelow({tree}), {}, pool.executor());
  const auto rows = loop.await(consume(scan.stream));
  return {measurement("scan", kBareWalk, watch, rows)};
}

std::vector<IndexMeasurement> measurePlainWriting(const std::string& tree,
                                                  const std::string& data) {
  platform::createPrivateFolder(data);
  PlainWriter writer(databasePath(data));
  const Stopwatch watch;
  const auto rows = visitEntries(tree, [&](const platform::DirectoryEnumerator::Entry& entry) {
    writer.add(
        FileRecord::from(std::string(entry.name), std::string(entry.path), entry.attributes));
  });
  writer.finish();
  return {withSizes(measurement(kPlainWriting, kPlainWriting, watch, rows), data)};
}

std::vector<IndexMeasurement> measureRebuild(const std::string& tree, const std::string& data) {
  tasks::RunLoop loop;
  const tasks::ThreadPool pool(kScanThreads);
  platform::FileDefaultsStore defaults(data);
  FileIndexActor actor({.dataFolder = data,
                        .background = pool.executor(),
                        .main = loop.executor(),
                        .defaults = defaults,
                        .changes = std::nullopt,
                        .log = [](const std::string&) {}});

  const Stopwatch watch;
  loop.await(actor.rebuildIndex(everythingBelow({tree})));
  auto searchable =
      withSizes(measurement("rebuild: searchable", kPlainWriting, watch, /*rows=*/0), data);
  searchable.rows = loop.await(actor.sharedDatabase().totalFileCount());
  loop.await(actor.settled());
  const auto merged = measurement("rebuild: merged", kPlainWriting, watch, searchable.rows);
  const auto result = std::vector{searchable, withSizes(merged, data)};
  loop.await(actor.shutDown());
  return result;
}

std::vector<IndexMeasurement> measureClearing(const std::string& data) {
  tasks::RunLoop loop;
  const tasks::ThreadPool pool(1);
  DatabaseManager database(data, pool.executor());
  const auto rows = loop.await(database.totalFileCount());
  const Stopwatch watch;
  loop.await(database.clearAll());
  return {withSizes(measurement("clearAll", /*yardstick=*/"", watch, rows), data)};
}

void setRatios(std::vector<IndexMeasurement>& measurements) {
  for (auto& measurement : measurements) {
    const auto yardstick =
        std::ranges::find(measurements, measurement.yardstick, &IndexMeasurement::name);
    measurement.ratio =
        yardstick != measurements.end() ? yardstick->seconds / measurement.seconds : 0;
  }
}

void to_json(nlohmann::ordered_json& json, const IndexMeasurement& measurement) {
  const auto rows = static_cast<double>(measurement.rows);
  json = {{"name", measurement.name},
          {"yardstick", measurement.yardstick},
          {"seconds", measurement.seconds},
          {"rows", measurement.rows},
          {"rowsPerSecond", measurement.seconds > 0 ? rows / measurement.seconds : 0},
          {"ratio", measurement.ratio},
          {"peakAnonymousBytes", measurement.peakAnonymousBytes},
          {"databaseBytes", measurement.databaseBytes},
          {"logBytes", measurement.logBytes},
          {"peakLogBytes", measurement.peakLogBytes}};
}

void from_json(const nlohmann::ordered_json& json, IndexMeasurement& measurement) {
  json.at("name").get_to(measurement.name);
  json.at("yardstick").get_to(measurement.yardstick);
  json.at("seconds").get_to(measurement.seconds);
  json.at("rows").get_to(measurement.rows);
  json.at("ratio").get_to(measurement.ratio);
  json.at("peakAnonymousBytes").get_to(measurement.peakAnonymousBytes);
  json.at("databaseBytes").get_to(measurement.databaseBytes);
  json.at("logBytes").get_to(measurement.logBytes);
  json.at("peakLogBytes").get_to(measurement.peakLogBytes);
}

}  // namespace zelnor::bench
