#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace zelnor::bench {

/// One measured piece of work on a tree.
struct IndexMeasurement {
  std::string name;
  std::string yardstick;  ///< name of the measurement that `ratio` compares with; empty for none
  double seconds = 0;
  std::int64_t rows = 0;           ///< entries seen, written or removed
  std::int64_t databaseBytes = 0;  ///< of the index afterwards; 0 if there is none
  std::int64_t logBytes = 0;
  std::int64_t peakLogBytes = 0;
  std::int64_t peakAnonymousBytes = 0;
  double ratio = 0;  ///< how many times as fast as the yardstick; 0 without one
};

void to_json(nlohmann::ordered_json& json, const IndexMeasurement& measurement);
void from_json(const nlohmann::ordered_json& json, IndexMeasurement& measurement);

/// Sets the ratio of each from the seconds of its yardstick among them.
void setRatios(std::vector<IndexMeasurement>& measurements);

// Each runs where it is called and fills what it can know of itself. `tree` is the folder to walk,
// `data` the folder of the index. All run at normal priority: at idle priority, where the
// application indexes, the other load of the machine would weigh on ours alone.

std::vector<IndexMeasurement> measureBareWalk(const std::string& tree);
/// Our own walk, in byte order of whole paths, with paths.
std::vector<IndexMeasurement> measureEnumerator(const std::string& tree);
/// The walk with records made of the entries, handed to another thread in batches, which drops
/// them.
std::vector<IndexMeasurement> measureScanner(const std::string& tree);
/// Walk and write to a new index in `data`.
std::vector<IndexMeasurement> measurePlainWriting(const std::string& tree, const std::string& data);
/// The application's full rebuild into a new index in `data`: until everything is searchable, and
/// until the full-text table has been merged (counted from the start).
std::vector<IndexMeasurement> measureRebuild(const std::string& tree, const std::string& data);
/// Empties the index in `data`.
std::vector<IndexMeasurement> measureClearing(const std::string& data);

/// The write-ahead log of the index in `data`.
std::string logPath(const std::string& data);

}  // namespace zelnor::bench
