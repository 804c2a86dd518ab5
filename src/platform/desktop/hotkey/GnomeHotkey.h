#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/GlobalHotkey.h"
#include "platform/desktop/hotkey/MainThreadCallbacks.h"
#include "tasks/Async.h"

namespace zelnor::platform {

/// A shortcut in GNOME's own settings, which starts the program a second time: what the second
/// start says to the running one takes the place of `pressed`, which is never called.
///
/// Refuses with kHotkeyUnavailable without GNOME's settings, and with kHotkeyTaken what is used in
/// them already. Reads and writes them on a thread of its own.
class GnomeHotkey final : public GlobalHotkey {
 public:
  /// How long the end waits until the shortcut is removed.
  static constexpr std::chrono::milliseconds kEndPatience{500};

  /// `program` is a path, or a name on the PATH; `main` executes on the main thread.
  GnomeHotkey(tasks::Executor main, std::string program);
  /// Removes the shortcut. A settings service that does not answer is not waited for longer than
  /// the patience.
  ~GnomeHotkey() override;

  void grab(const HotkeyConfiguration& combination, Pressed pressed, Refused refused) override;
  void release() override;

 private:
  class Worker;

  tasks::Executor main_;
  const std::string program_;
  std::shared_ptr<MainThreadCallbacks::Called> called_;
  std::shared_ptr<Worker> worker_;  ///< none before the first grab
};

}  // namespace zelnor::platform
