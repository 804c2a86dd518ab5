#include "bench/PanelMeasurements.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <vector>

#include <QScrollBar>
#include <QTimer>

#include "app/AppEnvironment.h"
#include "app/DesktopServices.h"
#include "app/SearchWindowController.h"
#include "bench/HotkeyMeasurements.h"
#include "bench/MainThreadPulse.h"
#include "bench/Statistics.h"
#include "bench/Stopwatch.h"
#include "bench/TimedSource.h"
#include "bench/Typist.h"
#include "bench/WatchedProcess.h"
#include "bookmarks/BookmarkPersistenceService.h"
#include "bookmarks/BookmarkServices.h"
#include "bookmarks/BookmarkViewModel.h"
#include "platform/FileDefaultsStore.h"
#include "platform/desktop/QtMainExecutor.h"
#include "search/SearchEngine.h"
#include "search/SearchServices.h"
#include "shell/Preferences.h"
#include "tests/support/TemporaryFolder.h"
#include "ui/list/ResultRows.h"
#include "ui/panel/SearchView.h"

namespace zelnor::bench {
namespace {

constexpr double kMilli = 1e3;
constexpr double kMega = 1e6;
constexpr double kFrame = 0.016;  // seconds
constexpr std::chrono::milliseconds kSettling{800};
constexpr std::chrono::milliseconds kNextFrame{16};
constexpr int kTimesTyped = 60;
constexpr int kTimesOpened = 10;
constexpr int kScrollSteps = 1'000;
constexpr int kSearches = 1'000;
constexpr int kFirstSearches = 10;
constexpr std::chrono::seconds kPatience{60};
constexpr std::array kWords{"report", "html", "config", "test", "lib", "readme"};

/// The panel as the application puts it together, on an index that nobody writes.
class Panel {
 public:
  explicit Panel(const std::string& data)
      : database_(data, pool_.executor(), DatabaseManager::Access::readOnly) {
    controller_.showWindow({});
    handleEventsFor(kSettling);
  }
  ~Panel() {
    controller_.close();
    bool isStopped = false;
    desktop_.stop([&] { search_.stop([&] { bookmarks_.stop([&] { isStopped = true; }); }); });
    waitFor([&] { return isStopped; });
  }
  Panel(const Panel&) = delete;
  Panel& operator=(const Panel&) = delete;

  static void waitFor(const std::function<bool()>& condition) {
    const Stopwatch watch;
    while (!condition()) {
      handleEventsFor(std::chrono::milliseconds(1));
      if (watch.seconds() > std::chrono::duration<double>(kPatience).count()) {
        throw std::runtime_error("the panel does not answer");
      }
    }
  }
  void search(const std::string& text) {
    search_.setQueryText(text);
    search_.performSearch();
    waitFor([this] { return !search_.isSearching(); });
  }

  TimedSource& source() { return source_; }
  SearchViewModel& model() { return search_; }
  app::SearchWindowController& controller() { return controller_; }
  ui::SearchView& view() { return controller_.view(); }
  [[nodiscard]] tasks::Executor main() const { return main_.executor(); }
  ui::ResultRows& rows() { return *view().findChild<ui::ResultRows*>(); }

 private:
  const test::TemporaryFolder folder_;
  platform::QtMainExecutor main_;
  tasks::ThreadPool pool_{2};
  tasks::ThreadPool matchers_{tasks::processorCount()};
  tasks::SteadyClock clock_{pool_.executor()};
  platform::FileDefaultsStore defaults_{folder_ / "settings"};
  DatabaseManager database_;
  SearchEngine engine_{database_, matchers_.executor()};
  TimedSource source_{engine_, pool_.executor()};
  SearchViewModel search_{
      SearchServices{source_, clock_, defaults_, main_.executor(), pool_.executor()}};
  BookmarkPersistenceService bookmarkFiles_{folder_.path(), pool_.executor()};
  BookmarkViewModel bookmarks_{BookmarkServices{bookmarkFiles_, main_.executor()}};
  app::DesktopServices desktop_{main_.executor(), clock_};
  Preferences preferences_{defaults_, main_.executor(), pool_.executor()};
  platform::DesktopWindows windows_;
  app::SearchWindowController controller_{
      {search_, bookmarks_, desktop_.files(), desktop_.clipboard(), &desktop_.icons()},
      preferences_,
      windows_};
};

Figure milliseconds(const std::string& name, double seconds) {
  return {.name = name, .unit = "ms", .value = seconds * kMilli};
}
Figure number(const std::string& name, double value) {
  return {.name = name, .unit = "", .value = value};
}

void measureAnswers(Panel& panel, PaintWatch& application, Figures& figures) {
  Typist typist(application, panel.view(), panel.model());
  std::vector<double> rest;
  for (int i = 0; i < kTimesTyped; ++i) {
    panel.source().takeSeconds();
    const double seconds = typist.type(QString::fromLatin1(kWords.at(i % kWords.size())));
    rest.push_back(seconds - kDebounceSeconds - panel.source().takeSeconds());
  }
  const auto statistics = Statistics::of(rest);
  figures.push_back(
      milliseconds("key to painted, less debounce and engine: median", statistics.median));
  figures.push_back(milliseconds("key to painted, less debounce and engine: p95", statistics.p95));
}

/// The waits of the main thread while `work` goes on.
std::vector<double> waitsDuring(const std::function<void()>& work) {
  MainThreadPulse pulse;
  work();
  auto waits = pulse.stop();
  std::ranges::sort(waits);
  return waits;
}

void measureScrolling(Panel& panel, Figures& figures) {
  panel.search("r:.");
  figures.push_back(
      number("rows scrolled through", static_cast<double>(panel.model().results().size())));
  auto* bar = panel.rows().verticalScrollBar();
  handleEventsFor(kSettling);
  const auto waits = waitsDuring([&] {
    for (int step = 0; step <= kScrollSteps; ++step) {
      bar->setValue(static_cast<int>(static_cast<double>(bar->maximum()) * step / kScrollSteps));
      handleEventsFor(kNextFrame);
    }
  });
  figures.push_back(milliseconds("scrolling: longest step", percentile(waits, 100)));
  figures.push_back(milliseconds("scrolling: p99", percentile(waits, 99)));
}

void measureOpening(Panel& panel, Figures& figures) {
  panel.search("report");
  handleEventsFor(kSettling);
  const auto measure = [&](const std::string& name, const std::function<void(bool)>& open) {
    const auto waits = waitsDuring([&] {
      for (int i = 0; i < kTimesOpened * 2; ++i) {
        open(i % 2 == 0);
        handleEventsFor(kSettling / 2);
      }
    });
    const auto slow = std::ranges::count_if(waits, [](double wait) { return wait > kFrame; });
    figures.push_back(milliseconds(name + ": longest step", percentile(waits, 100)));
    figures.push_back(number(name + ": waits over 16 ms", static_cast<double>(slow)));
  };
  measure("filters", [&](bool isOpen) { panel.view().setShowsFilters(isOpen); });
  measure("sidebar", [&](bool isOpen) { panel.view().setShowsBookmarks(isOpen); });
}

/// Numbers are in many names.
void measureMemory(Panel& panel, Figures& figures) {
  std::int64_t early = 0;
  for (int i = 0; i < kSearches; ++i) {
    panel.search(std::to_string(i));
    handleEventsFor(std::chrono::milliseconds(1));
    if (i + 1 == kFirstSearches) early = ownAnonymousBytes();
  }
  panel.model().setQueryText({});
  handleEventsFor(kSettling);
  const auto grown = static_cast<double>(ownAnonymousBytes() - early);
  figures.push_back({.name = "memory after 1,000 searches, above that after 10",
                     .unit = "MB",
                     .value = grown / kMega});
}

void measureComing(Panel& panel, const std::string& tree, Figures& figures) {
  const auto measure = [&](const std::string& when) {
    std::ranges::move(measureHotkey(panel.controller(), panel.main(), when),
                      std::back_inserter(figures));
  };
  measure("");
  if (tree.empty()) return;
  const test::TemporaryFolder folder;
  app::AppEnvironment other({.homeFolder = tree,
                             .dataFolder = folder / "data",
                             .settingsFolder = folder / "settings",
                             .roots = {tree},
                             .action = {}});
  other.open(kPatience);
  other.startIndexing();
  handleEventsFor(kSettling);
  measure(", while a tree is indexed");
  other.shutDown();
}

}  // namespace

Figures measurePanel(PaintWatch& application, const std::string& data, const std::string& tree) {
  Figures figures;
  Panel panel(data);
  measureMemory(panel, figures);
  measureAnswers(panel, application, figures);
  measureOpening(panel, figures);
  measureScrolling(panel, figures);
  panel.model().setQueryText({});
  measureComing(panel, tree, figures);
  return figures;
}

}  // namespace zelnor::bench
