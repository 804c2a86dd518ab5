#include "bench/LatencyChanges.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace zelnor::bench {
namespace {

namespace fs = std::filesystem;

constexpr double kMeanPause = 0.1;  // seconds
constexpr double kSecondsForAll = 60;

enum class Kind : std::uint8_t { create, write, rename, remove };
constexpr int kKinds = 4;

Kind kindOf(int number) { return static_cast<Kind>(number % kKinds); }

struct Pending {
  Stopwatch since;
  SelectStatement isShown;
};

}  // namespace

LatencyChanges::LatencyChanges(std::string folder, int count)
    : folder_(std::move(folder)), count_(count) {
  fs::create_directories(folder_);
  for (int i = 0; i < count_; ++i) {
    if (kindOf(i) != Kind::create) std::ofstream(file(i)).flush();
  }
}

std::string LatencyChanges::file(int number) const {
  return folder_ + "/file " + std::to_string(number);
}

SelectStatement LatencyChanges::make(int number) const {
  const auto path = file(number);
  const auto newPath = path + " renamed";
  switch (kindOf(number)) {
    case Kind::create:
      std::ofstream(path).flush();
      return {.sql = "SELECT COUNT(*) FROM files WHERE path = ?", .bindings = {path}};
    case Kind::write:
      std::ofstream(path) << '.';
      return {.sql = "SELECT COUNT(*) FROM files WHERE path = ? AND size = 1", .bindings = {path}};
    case Kind::rename:
      fs::rename(path, newPath);
      return {.sql = "SELECT COUNT(*) FROM files WHERE path = ?", .bindings = {newPath}};
    case Kind::remove:
      break;
  }
  fs::remove(path);
  return {.sql = "SELECT NOT EXISTS (SELECT 1 FROM files WHERE path = ?)", .bindings = {path}};
}

std::vector<double> LatencyChanges::run(const IndexProbe& probe, Random& random) const {
  std::vector<double> seconds;
  std::vector<Pending> waiting;
  const Stopwatch clock;
  double due = 0;
  int made = 0;
  const auto makeWhatIsDue = [&] {
    if (made == count_ || clock.seconds() < due) return;
    const Stopwatch since;
    waiting.push_back({since, make(made++)});
    due = clock.seconds() + kMeanPause * random.exponential();
  };
  const auto takeShown = [&] {
    std::erase_if(waiting, [&](const Pending& change) {
      const auto waited = change.since.seconds();
      if (!probe.shows(change.isShown)) return false;
      seconds.push_back(waited);
      return true;
    });
    return made == count_ && waiting.empty();
  };
  if (!probe.watch(kSecondsForAll + (count_ * kMeanPause), takeShown, makeWhatIsDue)) {
    throw std::runtime_error("a change does not show in the index");
  }
  return seconds;
}

}  // namespace zelnor::bench
