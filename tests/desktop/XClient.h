#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

#include <QImage>
#include <QRect>

namespace zelnor::test {

/// Another program in the same X server: it presses keys and buttons as a user would (XTEST), and
/// sees which windows there are.
class XClient {
 public:
  XClient();

  // Keys are named as in X11: "Control_L", "Return", "a". A layout of US English is expected.

  /// Presses them one after the other and lets go of them in reverse order.
  void press(const std::vector<std::string>& keys);
  /// One key after the other, as fast as the server takes them.
  void type(std::string_view ascii);
  void moveTo(QPoint point);
  void click(QPoint point);
  /// Slowly enough for a window manager to follow.
  void drag(QPoint from, QPoint to);

  [[nodiscard]] bool hasWindowManager();
  /// The mapped window with this title.
  [[nodiscard]] std::optional<xcb_window_t> window(std::string_view title);
  [[nodiscard]] bool isActive(std::string_view title);
  [[nodiscard]] std::optional<QRect> geometry(std::string_view title);
  /// Whether the window has this state (EWMH).
  [[nodiscard]] bool hasState(xcb_window_t window, std::string_view state);
  /// Whether a menu, or anything else that no window manager manages, is on the screen.
  [[nodiscard]] bool hasMenu();
  [[nodiscard]] QImage screen();

  /// A window of this client's own, which gets the keyboard.
  xcb_window_t openWindow(std::string_view title);
  /// Closed by the window manager's rules.
  void closeWindow(xcb_window_t window);

  /// What was copied, as this target; empty if it is not offered.
  [[nodiscard]] std::string clipboard(std::string_view target);

  [[nodiscard]] xcb_connection_t* connection() { return connection_.get(); }

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };
  struct Key {
    std::uint8_t code;
    bool isShifted;
  };

  [[nodiscard]] Key key(std::string_view name);
  void fake(std::uint8_t type, std::uint8_t detail, QPoint point = {});
  [[nodiscard]] xcb_atom_t atom(std::string_view name);
  [[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window, std::string_view property);
  [[nodiscard]] std::string bytes(xcb_window_t window, std::string_view property);

  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  xcb_screen_t* screen_;
};

}  // namespace zelnor::test
