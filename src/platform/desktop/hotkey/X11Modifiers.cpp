#include "platform/desktop/hotkey/X11Modifiers.h"

#include <algorithm>
#include <initializer_list>

#include <xcb/xproto.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace zelnor::platform {

namespace {

using Symbols = std::initializer_list<std::uint32_t>;

/// All modifiers that have a key with one of these.
std::uint16_t modifiersWith(std::span<const ModifierKey> keys, Symbols symbols) {
  std::uint16_t found = 0;
  for (const auto& key : keys) {
    if (std::ranges::find(symbols, key.symbol) != symbols.end()) found |= key.modifier;
  }
  return found;
}

/// One of them: the first that some modifier has.
std::uint16_t firstModifier(std::span<const ModifierKey> keys,
                            std::initializer_list<Symbols> wishes, std::uint16_t otherwise) {
  for (const auto& symbols : wishes) {
    const auto found = modifiersWith(keys, symbols);
    if (found != 0) return found & static_cast<std::uint16_t>(-found);
  }
  return otherwise;
}

}  // namespace

X11Modifiers X11Modifiers::from(std::span<const ModifierKey> keys) {
  X11Modifiers modifiers;
  modifiers.option = firstModifier(
      keys, {{XKB_KEY_Alt_L, XKB_KEY_Alt_R}, {XKB_KEY_Meta_L, XKB_KEY_Meta_R}}, XCB_MOD_MASK_1);
  modifiers.command =
      firstModifier(keys, {{XKB_KEY_Super_L, XKB_KEY_Super_R}, {XKB_KEY_Hyper_L, XKB_KEY_Hyper_R}},
                    XCB_MOD_MASK_4);
  modifiers.locks =
      XCB_MOD_MASK_LOCK | modifiersWith(keys, {XKB_KEY_Num_Lock, XKB_KEY_Scroll_Lock});
  return modifiers;
}

std::vector<std::uint16_t> X11Modifiers::masks(const HotkeyConfiguration& combination) const {
  const auto has = [&](std::uint32_t bit) { return (combination.modifiers & bit) != 0; };
  std::uint16_t held = 0;
  if (has(HotkeyConfiguration::kCommand)) held |= command;
  if (has(HotkeyConfiguration::kOption)) held |= option;
  if (has(HotkeyConfiguration::kControl)) held |= XCB_MOD_MASK_CONTROL;
  if (has(HotkeyConfiguration::kShift)) held |= XCB_MOD_MASK_SHIFT;

  std::vector<std::uint16_t> masks;
  if (held == 0) return masks;
  const auto choices = static_cast<std::uint16_t>(locks & ~held);
  for (std::uint16_t choice = choices;; choice = (choice - 1) & choices) {
    masks.push_back(held | choice);
    if (choice == 0) return masks;
  }
}

}  // namespace zelnor::platform
