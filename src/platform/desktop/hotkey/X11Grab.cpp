#include "platform/desktop/hotkey/X11Grab.h"

#include <utility>

namespace zelnor::platform {

X11Grab::X11Grab(const X11Connection& connection, std::uint8_t keyCode,
                 std::vector<std::uint16_t> masks)
    : connection_(connection), keyCode_(keyCode), masks_(std::move(masks)) {
  take();
  if (error_ != 0) giveBack();
}

X11Grab::~X11Grab() {
  if (error_ == 0) giveBack();
}

void X11Grab::take() {
  std::vector<xcb_void_cookie_t> asked;
  for (const auto root : connection_.roots()) {
    for (const auto mask : masks_) {
      asked.push_back(xcb_grab_key_checked(connection_.get(), /*owner_events=*/0, root, mask,
                                           keyCode_, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC));
    }
  }
  for (const auto cookie : asked) {
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(connection_.get(), cookie));
    if (error && error_ == 0) error_ = error->error_code;
  }
}

void X11Grab::giveBack() {
  xcb_void_cookie_t last{};
  for (const auto root : connection_.roots()) {
    for (const auto mask : masks_) {
      last = xcb_ungrab_key_checked(connection_.get(), keyCode_, root, mask);
    }
  }
  if (last.sequence == 0) return;
  const XcbPointer<xcb_generic_error_t> error(xcb_request_check(connection_.get(), last));
}

}  // namespace zelnor::platform
