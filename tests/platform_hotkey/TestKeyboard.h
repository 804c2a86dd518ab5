#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace zelnor::test {

/// A client of an X server that presses keys, and has windows that take them. Everything it asks
/// for has happened in the server when a call returns. Keys by their X11 codes.
class TestKeyboard {
 public:
  static constexpr std::uint8_t kControl = 37;
  static constexpr std::uint8_t kShift = 50;
  static constexpr std::uint8_t kAlt = 64;
  static constexpr std::uint8_t kSuper = 133;
  static constexpr std::uint8_t kCapsLock = 66;
  static constexpr std::uint8_t kNumLock = 77;
  static constexpr std::uint8_t kSpace = 65;
  static constexpr std::uint8_t kLetterA = 38;

  explicit TestKeyboard(const std::string& display);

  void press(std::uint8_t key);
  void release(std::uint8_t key);
  /// Presses all in this order, and lets go of them in the other.
  void tap(std::initializer_list<std::uint8_t> keys);

  /// A mapped window that hears key presses.
  xcb_window_t makeWindow();
  void focus(xcb_window_t window);
  /// The keys that arrived in `window` since the last call of this for any window.
  std::vector<std::uint8_t> keysPressedIn(xcb_window_t window);

  /// Grabs the key for this client; answers the X error, 0 if it could be had.
  int grab(std::uint8_t key, std::uint16_t modifiers);
  void ungrab(std::uint8_t key, std::uint16_t modifiers);
  /// Whether another client has it.
  bool isTaken(std::uint8_t key, std::uint16_t modifiers);

  /// Makes `key` a key of the modifier with this bit, and of no other.
  void moveModifier(std::uint8_t key, std::uint16_t modifier);

 private:
  void fake(std::uint8_t type, std::uint8_t key);
  void sync();
  [[nodiscard]] xcb_window_t root() const;

  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
};

}  // namespace zelnor::test
