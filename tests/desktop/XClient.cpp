#include "tests/desktop/XClient.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <map>
#include <ranges>
#include <stdexcept>
#include <thread>

#include <X11/keysym.h>
#include <xcb/xtest.h>

#include "tests/desktop/Waiting.h"

namespace zelnor::test {

namespace {

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

xcb_keysym_t keysymOf(std::string_view name) {
  static const std::map<std::string_view, xcb_keysym_t> kNames{{"Control_L", XK_Control_L},
                                                               {"Alt_L", XK_Alt_L},
                                                               {"Shift_L", XK_Shift_L},
                                                               {"Super_L", XK_Super_L},
                                                               {"space", XK_space},
                                                               {"Return", XK_Return},
                                                               {"Escape", XK_Escape},
                                                               {"Down", XK_Down},
                                                               {"Up", XK_Up},
                                                               {"Delete", XK_Delete},
                                                               {"F10", XK_F10},
                                                               {"Tab", XK_Tab},
                                                               {"BackSpace", XK_BackSpace},
                                                               {"Caps_Lock", XK_Caps_Lock}};
  if (const auto found = kNames.find(name); found != kNames.end()) return found->second;
  if (name.size() == 1) return static_cast<unsigned char>(name.front());  // Latin-1 is itself
  throw std::invalid_argument("no key is called " + std::string(name));
}

}  // namespace

XClient::XClient() {
  int number = 0;
  connection_.reset(xcb_connect(/*displayname=*/nullptr, &number));
  if (xcb_connection_has_error(connection_.get()) != 0) throw std::runtime_error("no X server");
  screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
}

XClient::Key XClient::key(std::string_view name) {
  const auto* setup = xcb_get_setup(connection_.get());
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const auto cookie = xcb_get_keyboard_mapping(connection_.get(), setup->min_keycode, count);
  const Reply<xcb_get_keyboard_mapping_reply_t> mapping(
      xcb_get_keyboard_mapping_reply(connection_.get(), cookie, /*e=*/nullptr));
  const auto wanted = keysymOf(name);
  const auto* keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
  const int perKey = mapping->keysyms_per_keycode;
  for (int column = 0; column < 2; ++column) {
    for (int row = 0; row < count; ++row) {
      if (keysyms[row * perKey + column] != wanted) continue;
      return {.code = static_cast<std::uint8_t>(setup->min_keycode + row),
              .isShifted = column == 1};
    }
  }
  throw std::runtime_error("no key gives " + std::string(name));
}

void XClient::fake(std::uint8_t type, std::uint8_t detail, QPoint point) {
  const auto cookie = xcb_test_fake_input_checked(
      connection_.get(), type, detail, XCB_CURRENT_TIME, screen_->root,
      static_cast<std::int16_t>(point.x()), static_cast<std::int16_t>(point.y()),
      /*deviceid=*/0);
  const Reply<xcb_generic_error_t> error(xcb_request_check(connection_.get(), cookie));
  if (error) throw std::runtime_error("XTEST refuses");
}

void XClient::press(const std::vector<std::string>& keys) {
  for (const auto& name : keys) fake(XCB_KEY_PRESS, key(name).code);
  for (const auto& name : keys | std::views::reverse) fake(XCB_KEY_RELEASE, key(name).code);
}

void XClient::type(std::string_view ascii) {
  for (const char character : ascii) {
    const auto pressed = key(character == ' ' ? "space" : std::string(1, character));
    const auto shift = key("Shift_L").code;
    if (pressed.isShifted) fake(XCB_KEY_PRESS, shift);
    fake(XCB_KEY_PRESS, pressed.code);
    fake(XCB_KEY_RELEASE, pressed.code);
    if (pressed.isShifted) fake(XCB_KEY_RELEASE, shift);
  }
}

void XClient::moveTo(QPoint point) { fake(XCB_MOTION_NOTIFY, /*detail=*/0, point); }

void XClient::click(QPoint point) {
  moveTo(point);
  fake(XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1);
  fake(XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1);
}

void XClient::drag(QPoint from, QPoint to) {
  constexpr int kSteps = 10;
  constexpr auto kPause = std::chrono::milliseconds(20);
  moveTo(from);
  fake(XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1);
  for (int step = 1; step <= kSteps; ++step) {
    std::this_thread::sleep_for(kPause);
    moveTo(from + (to - from) * step / kSteps);
  }
  std::this_thread::sleep_for(kPause);
  fake(XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1);
}

xcb_atom_t XClient::atom(std::string_view name) {
  const auto cookie = xcb_intern_atom(connection_.get(), /*only_if_exists=*/0,
                                      static_cast<std::uint16_t>(name.size()), name.data());
  const Reply<xcb_intern_atom_reply_t> reply(
      xcb_intern_atom_reply(connection_.get(), cookie, /*e=*/nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::vector<std::uint32_t> XClient::numbers(xcb_window_t window, std::string_view property) {
  constexpr std::uint32_t kLongest = 4096;
  const auto cookie = xcb_get_property(connection_.get(), /*_delete=*/0, window, atom(property),
                                       XCB_GET_PROPERTY_TYPE_ANY, /*long_offset=*/0, kLongest);
  const Reply<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection_.get(), cookie, /*e=*/nullptr));
  if (!reply || reply->format != 32 || reply->value_len == 0) return {};
  std::vector<std::uint32_t> values(reply->value_len);
  std::memcpy(values.data(), xcb_get_property_value(reply.get()),
              values.size() * sizeof values.front());
  return values;
}

std::string XClient::bytes(xcb_window_t window, std::string_view property) {
  constexpr std::uint32_t kLongest = 4096;
  const auto cookie = xcb_get_property(connection_.get(), /*_delete=*/0, window, atom(property),
                                       XCB_GET_PROPERTY_TYPE_ANY, /*long_offset=*/0, kLongest);
  const Reply<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection_.get(), cookie, /*e=*/nullptr));
  if (!reply) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

bool XClient::hasWindowManager() {
  return !numbers(screen_->root, "_NET_SUPPORTING_WM_CHECK").empty();
}

std::optional<xcb_window_t> XClient::window(std::string_view wanted) {
  for (const auto window : numbers(screen_->root, "_NET_CLIENT_LIST")) {
    const auto cookie = xcb_get_window_attributes(connection_.get(), window);
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection_.get(), cookie, /*e=*/nullptr));
    const bool isMapped = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    if (isMapped && bytes(window, "_NET_WM_NAME") == wanted) return window;
  }
  return std::nullopt;
}

bool XClient::isActive(std::string_view wanted) {
  const auto shown = window(wanted);
  const auto cookie = xcb_get_input_focus(connection_.get());
  const Reply<xcb_get_input_focus_reply_t> focus(
      xcb_get_input_focus_reply(connection_.get(), cookie, /*e=*/nullptr));
  return shown && focus && focus->focus == *shown;
}

std::optional<QRect> XClient::geometry(std::string_view wanted) {
  const auto shown = window(wanted);
  if (!shown) return std::nullopt;
  const auto sizeCookie = xcb_get_geometry(connection_.get(), *shown);
  const Reply<xcb_get_geometry_reply_t> size(
      xcb_get_geometry_reply(connection_.get(), sizeCookie, /*e=*/nullptr));
  const auto placeCookie =
      xcb_translate_coordinates(connection_.get(), *shown, screen_->root, /*src_x=*/0, /*src_y=*/0);
  const Reply<xcb_translate_coordinates_reply_t> place(
      xcb_translate_coordinates_reply(connection_.get(), placeCookie, /*e=*/nullptr));
  if (!size || !place) return std::nullopt;
  return QRect(place->dst_x, place->dst_y, size->width, size->height);
}

bool XClient::hasState(xcb_window_t window, std::string_view state) {
  const auto states = numbers(window, "_NET_WM_STATE");
  return std::ranges::find(states, atom(state)) != states.end();
}

bool XClient::hasMenu() {
  constexpr int kSmallest = 40;  // window managers have hidden ones of a pixel
  const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(
      connection_.get(), xcb_query_tree(connection_.get(), screen_->root), /*e=*/nullptr));
  const auto* windows = xcb_query_tree_children(tree.get());
  const auto isMenu = [&](xcb_window_t window) {
    const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection_.get(), xcb_get_window_attributes(connection_.get(), window), /*e=*/nullptr));
    const Reply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(
        connection_.get(), xcb_get_geometry(connection_.get(), window), /*e=*/nullptr));
    return attributes && size && attributes->override_redirect != 0 &&
           attributes->map_state == XCB_MAP_STATE_VIEWABLE && size->width > kSmallest &&
           size->height > kSmallest && attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
  };
  return std::any_of(windows, windows + xcb_query_tree_children_length(tree.get()), isMenu);
}

QImage XClient::screen() {
  constexpr std::uint32_t kAllPlanes = ~std::uint32_t{0};
  const auto cookie =
      xcb_get_image(connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen_->root, /*x=*/0, /*y=*/0,
                    screen_->width_in_pixels, screen_->height_in_pixels, kAllPlanes);
  const Reply<xcb_get_image_reply_t> reply(
      xcb_get_image_reply(connection_.get(), cookie, /*e=*/nullptr));
  if (!reply) return {};
  return QImage(xcb_get_image_data(reply.get()), screen_->width_in_pixels,
                screen_->height_in_pixels, QImage::Format_RGB32)
      .copy();
}

xcb_window_t XClient::openWindow(std::string_view name) {
  const auto window = xcb_generate_id(connection_.get());
  const std::uint32_t background = screen_->white_pixel;
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window, screen_->root, /*x=*/50,
                    /*y=*/500, /*width=*/300, /*height=*/200, /*border_width=*/0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL,
                    &background);
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_NAME"),
                      atom("UTF8_STRING"), /*format=*/8, static_cast<std::uint32_t>(name.size()),
                      name.data());
  xcb_map_window(connection_.get(), window);
  xcb_flush(connection_.get());
  return window;
}

void XClient::closeWindow(xcb_window_t window) {
  xcb_destroy_window(connection_.get(), window);
  xcb_flush(connection_.get());
}

std::string XClient::clipboard(std::string_view target) {
  const auto window = xcb_generate_id(connection_.get());
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window, screen_->root, /*x=*/0,
                    /*y=*/0, /*width=*/1, /*height=*/1, /*border_width=*/0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, /*value_mask=*/0, nullptr);
  xcb_convert_selection(connection_.get(), window, atom("CLIPBOARD"), atom(target),
                        atom("ZELNOR_TEST"), XCB_CURRENT_TIME);
  xcb_flush(connection_.get());
  constexpr std::uint8_t kNotSent = 0x7F;  // the other bit says that a client has sent it
  std::string content;
  waitUntil([&] {
    const Reply<xcb_generic_event_t> event(xcb_poll_for_event(connection_.get()));
    const bool isAnswer = event && (event->response_type & kNotSent) == XCB_SELECTION_NOTIFY;
    if (isAnswer) content = bytes(window, "ZELNOR_TEST");
    return isAnswer;
  });
  xcb_destroy_window(connection_.get(), window);
  return content;
}

}  // namespace zelnor::test
