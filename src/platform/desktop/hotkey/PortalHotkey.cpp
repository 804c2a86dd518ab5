#include "platform/desktop/hotkey/PortalHotkey.h"

#include <string>
#include <thread>
#include <utility>

#include "platform/desktop/hotkey/Combination.h"
#include "platform/desktop/hotkey/PortalSession.h"

namespace zelnor::platform {

namespace {

using Milliseconds = std::chrono::milliseconds;

/// So many sessions in a row may be lost at once before the service counts as gone.
constexpr int kMostLosses = 10;
/// A session that lasted as long was a good one.
constexpr std::chrono::seconds kGoodSession{10};

}  // namespace

/// One combination, bound again whenever it was lost, until it is destroyed.
class PortalHotkey::Binding {
 public:
  Binding(const HotkeyConfiguration& combination, MainThreadCallbacks callbacks,
          Milliseconds firstWait)
      : combination_(combination), callbacks_(std::move(callbacks)), firstWait_(firstWait) {
    thread_ = std::thread([this] { worker_.runWith([this] { run(); }); });
  }
  Binding(const Binding&) = delete;
  Binding& operator=(const Binding&) = delete;
  ~Binding() {
    worker_.cancel();
    thread_.join();
  }

 private:
  void run() {
    const auto trigger = portalTrigger(combination_);
    if (!trigger) return callbacks_.refused(kHotkeyImpossible);
    const PortalShortcut shortcut{.id = "search-" + *trigger, .trigger = *trigger};
    try {
      keepBound(shortcut);
    } catch (const Cancelled&) {  // NOLINT(bugprone-empty-catch): nobody waits for anything more
    } catch (const PortalDenial&) {
      callbacks_.refused(kHotkeyTaken);
    } catch (const BusError&) {
      callbacks_.refused(kHotkeyUnavailable);
    }
  }

  void keepBound(const PortalShortcut& shortcut) {
    bool wasBound = false;
    for (int losses = 0; losses < kMostLosses; ++losses) {
      if (losses > 0) worker_.waitFor(firstWait_ * (1 << (losses - 1)));
      const auto begun = std::chrono::steady_clock::now();
      try {
        PortalSession session(worker_, shortcut,
                              [this](std::string token) { callbacks_.pressed(std::move(token)); });
        wasBound = true;
        session.serve();
      } catch (const BusError&) {
        if (!wasBound) throw;
      }
      if (std::chrono::steady_clock::now() - begun > kGoodSession) losses = 0;
    }
    throw BusError("lost too often");
  }

  const HotkeyConfiguration combination_;
  const MainThreadCallbacks callbacks_;
  const Milliseconds firstWait_;
  WorkerContext worker_;
  std::thread thread_;
};

PortalHotkey::PortalHotkey(tasks::Executor main, Milliseconds firstWait)
    : main_(std::move(main)), firstWait_(firstWait) {}

PortalHotkey::~PortalHotkey() { release(); }

void PortalHotkey::grab(const HotkeyConfiguration& combination, Pressed pressed, Refused refused) {
  release();
  called_ = std::make_shared<MainThreadCallbacks::Called>(
      MainThreadCallbacks::Called{.pressed = std::move(pressed), .refused = std::move(refused)});
  binding_ =
      std::make_unique<Binding>(combination, MainThreadCallbacks(main_, called_), firstWait_);
}

void PortalHotkey::release() {
  called_.reset();
  binding_.reset();
}

}  // namespace zelnor::platform
