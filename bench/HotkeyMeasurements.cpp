#include "bench/HotkeyMeasurements.h"

#include <chrono>
#include <stdexcept>
#include <vector>

#include <QEvent>
#include <QGuiApplication>
#include <QWidget>

#include "bench/MainThreadPulse.h"
#include "bench/Statistics.h"
#include "bench/Stopwatch.h"
#include "bench/Typist.h"
#include "platform/desktop/hotkey/GlobalHotkeys.h"
#include "shell/GlobalHotkeyManager.h"
#include "tests/desktop/XClient.h"
#include "ui/panel/SearchView.h"

namespace zelnor::bench {
namespace {

constexpr int kTimes = 50;
constexpr double kPatience = 10;  // seconds
constexpr double kMilli = 1e3;
constexpr std::chrono::milliseconds kBetween{100};

/// Says when a window has been painted since it was last asked.
class WindowWatch final : public QObject {
 public:
  explicit WindowWatch(QWidget& window) { window.installEventFilter(this); }

  void forget() { isPainted_ = false; }
  [[nodiscard]] bool isPainted() const { return isPainted_; }

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    isPainted_ = isPainted_ || event->type() == QEvent::Paint;
    return false;
  }

 private:
  bool isPainted_ = false;
};

}  // namespace

Figures measureHotkey(app::SearchWindowController& panel, const tasks::Executor& main,
                      const std::string& when) {
  if (QGuiApplication::platformName() != QStringLiteral("xcb")) return {};
  const auto hotkey = platform::makeGlobalHotkey(main, /*program=*/"zelnor");
  GlobalHotkeyManager manager(*hotkey);
  manager.registerHotkey(
      {}, [&](const platform::Activation& activation) { panel.showWindow(activation); });
  auto& window = *panel.view().window();
  WindowWatch watch(window);
  test::XClient user;
  std::vector<double> seconds;
  for (int time = 0; time < kTimes; ++time) {
    panel.close();
    handleEventsFor(kBetween);
    watch.forget();
    const Stopwatch stopwatch;
    user.press({"Control_L", "Alt_L", "space"});
    while (!watch.isPainted() || !window.isActiveWindow()) {
      handleEventsFor(std::chrono::milliseconds(1));
      if (stopwatch.seconds() > kPatience) throw std::runtime_error("the panel does not come");
    }
    seconds.push_back(stopwatch.seconds());
  }
  const auto statistics = Statistics::of(seconds);
  const auto figure = [&](const char* what, double value) {
    return Figure{.name = "hot key to painted and focused" + when + ": " + what,
                  .unit = "ms",
                  .value = value * kMilli};
  };
  return {figure("median", statistics.median), figure("p95", statistics.p95)};
}

}  // namespace zelnor::bench
