#pragma once

#include <chrono>
#include <memory>
#include <string>

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include "platform/GlobalHotkey.h"
#include "platform/desktop/hotkey/GrabFocusFilter.h"
#include "platform/desktop/hotkey/X11Connection.h"
#include "platform/desktop/hotkey/X11Grab.h"

namespace zelnor::platform {

/// A key of an X server, grabbed by its position with every state of the locks, on a connection of
/// its own; grabbed anew when the modifiers move. One call for a press, however long it is held.
///
/// What is typed right after the combination is meant for the window that it brings up. So the
/// server keeps all keys back from the press until a window of this program has the focus, at most
/// as long as the patience; then they arrive there. Qt is not told that a grab takes the focus.
///
/// Refuses with the X error's number. If the server goes, nothing is heard any more. Waits for the
/// server, never for a program. Needs a QGuiApplication.
class X11Hotkey final : public GlobalHotkey {
 public:
  /// Shorter than keyboards wait before they repeat a key: what repeats while keys are kept back
  /// would arrive behind the release.
  static constexpr std::chrono::milliseconds kPatience{200};

  /// `display` as in DISPLAY, whose value is taken if it is empty.
  explicit X11Hotkey(const std::string& display = {},
                     std::chrono::milliseconds patience = kPatience);
  ~X11Hotkey() override;

  void grab(const HotkeyConfiguration& combination, Pressed pressed, Refused refused) override;
  void release() override;

  /// See X11Connection.
  [[nodiscard]] bool isXwayland() const { return connection_.isXwayland(); }

 private:
  void hear();
  void hearSoon();
  void handle(const xcb_generic_event_t& event);
  void onPress(const xcb_key_press_event_t& event);
  void onRelease(const xcb_key_release_event_t& event);
  [[nodiscard]] bool isRepeat(const xcb_key_press_event_t& event) const;
  void awaitFocus();
  void allow(std::uint8_t mode);
  void takeGrab();

  GrabFocusFilter focusFilter_;
  X11Connection connection_;
  std::unique_ptr<QSocketNotifier> readable_;  ///< none without a server
  HotkeyConfiguration combination_;
  Pressed pressed_;
  Refused refused_;
  std::unique_ptr<X11Grab> grab_;
  bool isHeld_ = false;
  xcb_timestamp_t lastPress_ = 0;
  bool isMappingChanged_ = false;
  QTimer patience_;  ///< runs while keys are kept back
};

}  // namespace zelnor::platform
