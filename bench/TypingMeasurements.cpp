#include "bench/TypingMeasurements.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "app/AppEnvironment.h"
#include "bench/MainThreadPulse.h"
#include "bench/Statistics.h"
#include "bench/Stopwatch.h"
#include "bench/Typist.h"
#include "tests/support/TemporaryFolder.h"
#include "ui/panel/SearchView.h"

namespace zelnor::bench {
namespace {

constexpr double kMillisecondsPerSecond = 1e3;
constexpr std::chrono::milliseconds kFirstPainting{500};

/// How the first rebuild of the index goes.
class RebuildWatch {
 public:
  explicit RebuildWatch(app::AppEnvironment& environment) {
    QObject::connect(&environment, &app::AppEnvironment::indexStatusChanged, &receiver_,
                     [this](const IndexStatus& status) { take(status); });
    QObject::connect(&environment, &app::AppEnvironment::failed, &receiver_,
                     [this](const QString& reason) { failure_ = reason.toStdString(); });
  }

  /// Throws what made the rebuild fail.
  [[nodiscard]] bool isOver() const {
    if (failure_) throw std::runtime_error(*failure_);
    return seconds_.has_value();
  }
  [[nodiscard]] std::optional<double> seconds() const { return seconds_; }
  [[nodiscard]] std::int64_t entries() const { return entries_; }

 private:
  void take(const IndexStatus& status) {
    if (seconds_ || !status.lastIndexDate) return;
    seconds_ = watch_.seconds();
    entries_ = status.totalFiles;
  }

  const Stopwatch watch_;
  std::optional<double> seconds_;
  std::int64_t entries_ = 0;
  std::optional<std::string> failure_;
  QObject receiver_;
};

Figures figuresOf(const RebuildWatch& rebuild, const std::vector<double>& answers,
                  std::vector<double> waits) {
  const auto answered = Statistics::of(answers);
  std::ranges::sort(waits);
  const auto ms = [](double seconds) { return std::optional(seconds * kMillisecondsPerSecond); };
  return {{.name = "entries indexed meanwhile",
           .unit = "",
           .value = static_cast<double>(rebuild.entries())},
          {.name = "rebuild", .unit = "s", .value = rebuild.seconds()},
          {.name = "times typed", .unit = "", .value = static_cast<double>(answers.size())},
          {.name = "longest main-thread stall", .unit = "ms", .value = ms(percentile(waits, 100))},
          {.name = "main-thread wait: p99", .unit = "ms", .value = ms(percentile(waits, 99))},
          {.name = "last key to painted less debounce: median",
           .unit = "ms",
           .value = ms(answered.median - kDebounceSeconds)},
          {.name = "last key to painted less debounce: p95",
           .unit = "ms",
           .value = ms(answered.p95 - kDebounceSeconds)}};
}

}  // namespace

Figures measureTyping(PaintWatch& application, const std::string& tree, const std::string& text) {
  const test::TemporaryFolder data;
  app::AppEnvironment environment({.homeFolder = tree,
                                   .dataFolder = data / "data",
                                   .settingsFolder = data / "settings",
                                   .roots = {tree},
                                   .action = {}});
  auto& desktop = environment.desktop();
  ui::SearchView window({environment.searchViewModel(), environment.bookmarkViewModel(),
                         desktop.files(), desktop.clipboard(), &desktop.icons()});
  window.show();
  handleEventsFor(kFirstPainting);

  const RebuildWatch rebuild(environment);
  Typist typist(application, window, environment.searchViewModel());
  environment.open(std::chrono::minutes(1));
  environment.startIndexing();
  MainThreadPulse pulse;
  std::vector<double> answers;
  do {
    answers.push_back(typist.type(QString::fromStdString(text)));
  } while (!rebuild.isOver());
  auto figures = figuresOf(rebuild, answers, pulse.stop());
  window.hide();
  environment.shutDown();
  return figures;
}

}  // namespace zelnor::bench
