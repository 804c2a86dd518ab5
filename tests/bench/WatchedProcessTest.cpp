#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bench/WatchedProcess.h"

namespace zelnor::bench {
namespace {

TEST(WatchedProcess, AnswersWhatTheWorkAnswersAndThrowsWhatItThrows) {
  EXPECT_EQ(runWatched([] { return nlohmann::ordered_json{{"rows", 7}}; }).answer["rows"], 7);
  try {
    runWatched([]() -> nlohmann::ordered_json { throw std::runtime_error("no such tree"); });
    FAIL() << "nothing thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "no such tree");
  }
}

TEST(WatchedProcess, SeesThePeakOfMemoryThatTheCallerNeverUsed) {
  constexpr std::size_t kBytes = 64U << 20U;
  // More than a pipe holds: the child cannot end before the watcher has looked.
  const std::string answer(1U << 20U, 'x');
  std::vector<char> memory;
  const auto idle = runWatched([&] { return nlohmann::ordered_json(answer); });
  const auto greedy = runWatched([&] {
    memory.assign(kBytes, 'x');
    return nlohmann::ordered_json(answer);
  });
  EXPECT_EQ(greedy.answer.get<std::string>(), answer);
  EXPECT_GE(greedy.peakAnonymousBytes,
            idle.peakAnonymousBytes + static_cast<std::int64_t>(kBytes) / 2);
}

}  // namespace
}  // namespace zelnor::bench
