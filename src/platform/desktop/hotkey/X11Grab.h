#pragma once

#include <cstdint>
#include <vector>

#include "platform/desktop/hotkey/X11Connection.h"

namespace zelnor::platform {

/// One key with several choices of modifiers, heard on every screen whoever has the focus
/// (XGrabKey(3)). The keyboard is frozen when it is pressed, until XAllowEvents(3).
class X11Grab {
 public:
  /// Takes all of them or none; waits for the server. `connection` outlives the grab.
  X11Grab(const X11Connection& connection, std::uint8_t keyCode, std::vector<std::uint16_t> masks);
  X11Grab(const X11Grab&) = delete;
  X11Grab& operator=(const X11Grab&) = delete;
  /// Gives them back; waits for the server.
  ~X11Grab();

  /// The X error that it was refused with; 0 if it was not.
  [[nodiscard]] int error() const { return error_; }
  [[nodiscard]] std::uint8_t keyCode() const { return keyCode_; }
  [[nodiscard]] const std::vector<std::uint16_t>& masks() const { return masks_; }

 private:
  void take();
  void giveBack();

  const X11Connection& connection_;
  const std::uint8_t keyCode_;
  const std::vector<std::uint16_t> masks_;
  int error_ = 0;
};

}  // namespace zelnor::platform
