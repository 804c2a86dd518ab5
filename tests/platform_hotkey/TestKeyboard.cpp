#include "tests/platform_hotkey/TestKeyboard.h"

#include <algorithm>
#include <bit>

#include <xcb/xtest.h>

#include "platform/desktop/hotkey/X11Connection.h"

namespace zelnor::test {

using platform::XcbPointer;

namespace {
constexpr int kModifiers = 8;
}

TestKeyboard::TestKeyboard(const std::string& display)
    : connection_(xcb_connect(display.c_str(), /*screenp=*/nullptr)) {}

xcb_window_t TestKeyboard::root() const {
  return xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
}

void TestKeyboard::sync() {
  const XcbPointer<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
      connection_.get(), xcb_get_input_focus(connection_.get()), /*e=*/nullptr));
}

void TestKeyboard::fake(std::uint8_t type, std::uint8_t key) {
  xcb_test_fake_input(connection_.get(), type, key, XCB_CURRENT_TIME, root(), /*rootX=*/0,
                      /*rootY=*/0, /*deviceid=*/0);
  sync();
}

void TestKeyboard::press(std::uint8_t key) { fake(XCB_KEY_PRESS, key); }
void TestKeyboard::release(std::uint8_t key) { fake(XCB_KEY_RELEASE, key); }

void TestKeyboard::tap(std::initializer_list<std::uint8_t> keys) {
  for (const auto key : keys) press(key);
  std::vector<std::uint8_t> reversed(keys);
  std::ranges::reverse(reversed);
  for (const auto key : reversed) release(key);
}

xcb_window_t TestKeyboard::makeWindow() {
  const auto window = xcb_generate_id(connection_.get());
  const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS;
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window, root(), /*x=*/0, /*y=*/0,
                    /*width=*/10, /*height=*/10, /*border_width=*/0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                    XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  xcb_map_window(connection_.get(), window);
  sync();
  return window;
}

void TestKeyboard::focus(xcb_window_t window) {
  xcb_set_input_focus(connection_.get(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
  sync();
}

std::vector<std::uint8_t> TestKeyboard::keysPressedIn(xcb_window_t window) {
  sync();
  std::vector<std::uint8_t> keys;
  while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
    if (event->response_type != XCB_KEY_PRESS) continue;
    const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(*event);
    if (press.event == window) keys.push_back(press.detail);
  }
  return keys;
}

int TestKeyboard::grab(std::uint8_t key, std::uint16_t modifiers) {
  const auto asked = xcb_grab_key_checked(connection_.get(), /*owner_events=*/0, root(), modifiers,
                                          key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const XcbPointer<xcb_generic_error_t> error(xcb_request_check(connection_.get(), asked));
  return error ? error->error_code : 0;
}

void TestKeyboard::ungrab(std::uint8_t key, std::uint16_t modifiers) {
  xcb_ungrab_key(connection_.get(), key, root(), modifiers);
  sync();
}

bool TestKeyboard::isTaken(std::uint8_t key, std::uint16_t modifiers) {
  if (grab(key, modifiers) != 0) return true;
  ungrab(key, modifiers);
  return false;
}

void TestKeyboard::moveModifier(std::uint8_t key, std::uint16_t modifier) {
  const XcbPointer<xcb_get_modifier_mapping_reply_t> now(xcb_get_modifier_mapping_reply(
      connection_.get(), xcb_get_modifier_mapping(connection_.get()), /*e=*/nullptr));
  const auto width = now->keycodes_per_modifier;
  const auto* codes = xcb_get_modifier_mapping_keycodes(now.get());
  std::vector<std::uint8_t> changed(codes, codes + kModifiers * width);
  std::ranges::replace(changed, key, std::uint8_t{0});
  const auto row = changed.begin() + std::countr_zero(modifier) * width;
  *std::find(row, row + width, 0) = key;
  const XcbPointer<xcb_set_modifier_mapping_reply_t> reply(xcb_set_modifier_mapping_reply(
      connection_.get(), xcb_set_modifier_mapping(connection_.get(), width, changed.data()),
      /*e=*/nullptr));
}

}  // namespace zelnor::test
