#pragma once

#include <chrono>
#include <memory>

#include "platform/GlobalHotkey.h"
#include "platform/desktop/hotkey/MainThreadCallbacks.h"
#include "tasks/Async.h"

namespace zelnor::platform {

/// The GlobalShortcuts service of the desktop portal, which may ask the user, and lets him choose
/// another combination. A session that is lost is asked for again, less and less often, also after
/// the portal or the bus was started anew.
///
/// Refuses with kHotkeyUnavailable if there is no such service, or not any more; with kHotkeyTaken
/// if it or the user says no. Everything happens on a thread of the grab's own.
class PortalHotkey final : public GlobalHotkey {
 public:
  /// The first wait after a loss; each one is twice as long as the one before.
  static constexpr std::chrono::milliseconds kFirstWait{500};

  /// `main` executes on the main thread.
  explicit PortalHotkey(tasks::Executor main, std::chrono::milliseconds firstWait = kFirstWait);
  ~PortalHotkey() override;

  void grab(const HotkeyConfiguration& combination, Pressed pressed, Refused refused) override;
  /// Waits for the thread, which drops whatever it waits for.
  void release() override;

 private:
  class Binding;

  tasks::Executor main_;
  std::chrono::milliseconds firstWait_;
  std::shared_ptr<MainThreadCallbacks::Called> called_;
  std::unique_ptr<Binding> binding_;
};

}  // namespace zelnor::platform
