#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <nlohmann/json.hpp>

namespace zelnor::bench {

/// What a measurement in a process of its own answered, and what it used at most.
struct WatchedRun {
  nlohmann::ordered_json answer;
  std::int64_t peakAnonymousBytes = 0;  ///< private memory; mapped files do not count
  std::int64_t peakFileBytes = 0;       ///< of the watched file
};

/// Private memory of the calling process now.
std::int64_t ownAnonymousBytes();

/// Runs `work` in a forked child, so that peaks of one measurement do not hide those of the next,
/// and samples it every few milliseconds from outside, so that it need not share its time with the
/// watcher. `watchedFile` may come and go.
///
/// The calling process must have one thread. Throws std::runtime_error with the text of what `work`
/// threw.
WatchedRun runWatched(const std::function<nlohmann::ordered_json()>& work,
                      const std::string& watchedFile = {});

}  // namespace zelnor::bench
