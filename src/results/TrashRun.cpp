#include "results/TrashRun.h"

#include <optional>
#include <string>

#include "results/FileOperationService.h"
#include "tasks/RunOn.h"

namespace zelnor {

namespace {
constexpr const char* kCannotTrash = "无法删除文件";
}

tasks::Async<TrashOutcome> TrashRun::run(const std::vector<SearchResult>& results,
                                         std::stop_token stop) {
  TrashOutcome outcome;
  const auto total = static_cast<int>(results.size());
  int done = 0;
  watchTime();
  for (const auto& result : results) {
    if (outcome.wasRefused || stop.stop_requested()) break;
    outcome.attempted.insert(result.id());
    ++done;
    const bool goesOn = co_await moveOne(result.record.path, /*moreFollow=*/done < total);
    outcome.wasRefused = !goesOn;
    observer_.progressed(done, total);
  }
  watch_.cancel();
  co_return outcome;
}

/// Answers whether to go on.
tasks::Async<bool> TrashRun::moveOne(const std::string& path, bool moreFollow) {
  std::optional<std::string> reason;
  const auto move = [&] { services_.actions.trash(path); };
  try {
    co_await tasks::runOn(services_.blocking, move);
  } catch (const std::exception& error) {
    reason = error.what();
  }
  if (!reason) co_return true;
  watch_.cancel();
  const AlertText text{.message = kCannotTrash, .explanation = *reason, .moreFollow = moreFollow};
  const bool goesOn = co_await alerts_.warn(text);
  watchTime();
  co_return goesOn;
}

void TrashRun::watchTime() {
  watch_ = group_.spawn([&clock = services_.clock,
                         isLong = observer_.isLong](std::stop_token stop) -> tasks::Async<void> {
    const bool passed = co_await clock.sleep(FileOperationService::kLong, stop);
    if (passed && !stop.stop_requested()) isLong();
  });
}

}  // namespace zelnor
