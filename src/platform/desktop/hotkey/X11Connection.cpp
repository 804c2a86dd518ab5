#include "platform/desktop/hotkey/X11Connection.h"

#include <cstddef>
#include <string_view>

// The header is C, and a field in it is named like a keyword of C++.
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit

namespace zelnor::platform {

namespace {

constexpr std::uint8_t kEventType = 0x7f;  // above it: whether another client sent the event
constexpr int kModifiers = 8;

std::uint8_t withoutSender(const xcb_generic_event_t& event) {
  return event.response_type & kEventType;
}

}  // namespace

X11Connection::X11Connection(const std::string& display)
    : connection_(xcb_connect(display.empty() ? nullptr : display.c_str(), /*screenp=*/nullptr)) {
  if (!isBroken()) setUpKeyboard();
}

void X11Connection::setUpKeyboard() {
  auto* const connection = get();
  const auto* extension = xcb_get_extension_data(connection, &xcb_xkb_id);
  if (extension == nullptr || extension->present == 0) return;
  const XcbPointer<xcb_xkb_use_extension_reply_t> use(xcb_xkb_use_extension_reply(
      connection, xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION),
      /*e=*/nullptr));
  if (!use || use->supported == 0) return;
  keyboardEvents_ = extension->first_event;
  // A key that is held down repeats its press without a release each time.
  xcb_xkb_per_client_flags_unchecked(connection, XCB_XKB_ID_USE_CORE_KBD,
                                     XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                                     XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                                     /*ctrlsToChange=*/0, /*autoCtrls=*/0, /*autoCtrlsValues=*/0);
  // A client that knows XKB hears of changes by XKB's own events only.
  constexpr auto kEvents = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
  constexpr auto kMapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                             XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS;
  xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, kEvents, /*clear=*/0, kEvents,
                        kMapParts, kMapParts, /*details=*/nullptr);
  xcb_flush(connection);
}

std::vector<xcb_window_t> X11Connection::roots() const {
  std::vector<xcb_window_t> roots;
  if (isBroken()) return roots;
  for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(get())); screen.rem > 0;
       xcb_screen_next(&screen)) {
    roots.push_back(screen.data->root);
  }
  return roots;
}

X11Modifiers X11Connection::modifiers() const {
  if (isBroken()) return {};
  const auto* setup = xcb_get_setup(get());
  const auto asked = xcb_get_modifier_mapping(get());
  const auto symbolsAsked = xcb_get_keyboard_mapping(
      get(), setup->min_keycode,
      static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1));
  const XcbPointer<xcb_get_modifier_mapping_reply_t> map(
      xcb_get_modifier_mapping_reply(get(), asked, /*e=*/nullptr));
  const XcbPointer<xcb_get_keyboard_mapping_reply_t> symbols(
      xcb_get_keyboard_mapping_reply(get(), symbolsAsked, /*e=*/nullptr));
  if (!map || !symbols) return {};

  std::vector<ModifierKey> keys;
  const auto* codes = xcb_get_modifier_mapping_keycodes(map.get());
  const auto* table = xcb_get_keyboard_mapping_keysyms(symbols.get());
  for (int at = 0; at < kModifiers * map->keycodes_per_modifier; ++at) {
    if (codes[at] < setup->min_keycode) continue;  // an unused place
    const auto* symbol =
        table + std::ptrdiff_t{codes[at] - setup->min_keycode} * symbols->keysyms_per_keycode;
    for (int level = 0; level < symbols->keysyms_per_keycode; ++level) {
      keys.push_back(
          {.modifier = static_cast<std::uint16_t>(1U << (at / map->keycodes_per_modifier)),
           .symbol = symbol[level]});
    }
  }
  return X11Modifiers::from(keys);
}

bool X11Connection::isMappingChange(const xcb_generic_event_t& event) const {
  if (withoutSender(event) == XCB_MAPPING_NOTIFY) return true;
  if (keyboardEvents_ == 0 || withoutSender(event) != keyboardEvents_) return false;
  // All of XKB's events have one number; the second byte tells which it is.
  return event.pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY || event.pad0 == XCB_XKB_MAP_NOTIFY;
}

bool X11Connection::isXwayland() const {
  if (isBroken()) return false;
  constexpr std::string_view kName = "XWAYLAND";
  const XcbPointer<xcb_query_extension_reply_t> reply(xcb_query_extension_reply(
      get(), xcb_query_extension(get(), static_cast<std::uint16_t>(kName.size()), kName.data()),
      /*e=*/nullptr));
  return reply && reply->present != 0;
}

}  // namespace zelnor::platform
