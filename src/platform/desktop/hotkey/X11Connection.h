#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <xcb/xcb.h>

#include "platform/desktop/hotkey/X11Modifiers.h"

namespace zelnor::platform {

/// What XCB allocates: replies, events, errors.
struct XcbDeleter {
  void operator()(void* memory) const { std::free(memory); }  // NOLINT: as XCB wants it
};
template <class T>
using XcbPointer = std::unique_ptr<T, XcbDeleter>;

/// A connection of our own to an X server, set up to hear about keys. When the server goes, it
/// turns broken; every call then does nothing. One thread.
class X11Connection {
 public:
  /// To `display` (":1"); the one of the environment if that is empty.
  explicit X11Connection(const std::string& display);

  [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }
  [[nodiscard]] bool isBroken() const { return xcb_connection_has_error(connection_.get()) != 0; }
  /// A window for each screen that has one of its own.
  [[nodiscard]] std::vector<xcb_window_t> roots() const;

  /// What the modifiers are now. Waits for the server.
  [[nodiscard]] X11Modifiers modifiers() const;
  /// Whether the event says that the keyboard mapping, and with it the modifiers, changed.
  [[nodiscard]] bool isMappingChange(const xcb_generic_event_t& event) const;
  /// Whether the server draws into a Wayland compositor, which shows it only part of the keys.
  [[nodiscard]] bool isXwayland() const;

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };

  void setUpKeyboard();

  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  std::uint8_t keyboardEvents_ = 0;  ///< the number of XKB's events; 0 without XKB
};

}  // namespace zelnor::platform
