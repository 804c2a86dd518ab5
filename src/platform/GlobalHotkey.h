#pragma once

#include <functional>

#include "platform/FileOpener.h"
#include "platform/HotkeyConfiguration.h"

namespace zelnor::platform {

/// One key combination that is heard in every application. Main thread only.
class GlobalHotkey {
 public:
  /// With the proof that the user asked, for a window that is shown in answer.
  using Pressed = std::function<void(Activation)>;
  /// Why the desktop refuses: an error code of the window system or of the service asked.
  using Refused = std::function<void(int code)>;

  /// Releases it.
  virtual ~GlobalHotkey() = default;

  /// From now on `pressed` is called whenever the user presses `combination`, in place of any
  /// earlier one. `refused` is called once if that cannot be had, at once or later.
  virtual void grab(const HotkeyConfiguration& combination, Pressed pressed, Refused refused) = 0;
  /// Neither is called any more. No effect without a grab.
  virtual void release() = 0;
};

}  // namespace zelnor::platform
