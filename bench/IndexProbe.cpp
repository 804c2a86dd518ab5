#include "bench/IndexProbe.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "tests/support/IndependentWalk.h"

namespace zelnor::bench {
namespace {

using Rows = std::map<std::string, FileRecord>;

constexpr std::chrono::milliseconds kProbeInterval{1};
constexpr double kPatienceSeconds = 120;

SelectStatement countBelow(const std::string& folder) {
  return {.sql = "SELECT COUNT(*) FROM files WHERE path > ? AND path < ?",
          .bindings = {folder + '/', folder + static_cast<char>('/' + 1)}};
}

/// Whether `records` begins with `rows` and then leaves the folder.
bool areEqual(std::vector<FileRecord> records, const Rows& rows, const std::string& folder) {
  if (records.size() > rows.size()) {
    if (records.back().path.starts_with(folder + '/')) return false;
    records.pop_back();
  }
  return std::ranges::equal(records, rows, [](FileRecord record, const auto& row) {
    record.id = 0;
    return record == row.second;
  });
}

}  // namespace

bool IndexProbe::watch(double patience, const std::function<bool()>& look,
                       const std::function<void()>& meanwhile) const {
  const SelectStatement version{.sql = "PRAGMA data_version", .bindings = {}};
  const Stopwatch waited;
  std::optional<std::int64_t> seen;
  while (waited.seconds() < patience) {
    meanwhile();
    const auto now = search_.number(version);
    if (seen != now && look()) return true;
    seen = now;
    std::this_thread::sleep_for(kProbeInterval);
  }
  return false;
}

std::optional<double> IndexProbe::untilCorrect(const std::string& folder,
                                               const Stopwatch& since) const {
  const auto onDisk = test::walkIndependently(folder);
  const auto count = static_cast<std::int64_t>(onDisk.size());
  // NOLINTNEXTLINE(misc-const-correctness): set by the watch below
  std::optional<double> seconds;
  watch(kPatienceSeconds, [&] {
    const auto now = since.seconds();  // what is read from here on was there by then
    if (search_.number(countBelow(folder)) != count) return false;
    const auto records = reader_.recordsFrom(folder + '/', onDisk.size() + 1);
    if (areEqual(records, onDisk, folder)) seconds = now;
    return seconds.has_value();
  });
  return seconds;
}

}  // namespace zelnor::bench
