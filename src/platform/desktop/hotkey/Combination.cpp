#include "platform/desktop/hotkey/Combination.h"

#include <array>
#include <charconv>
#include <memory>
#include <string_view>

#include <glib.h>
#include <xkbcommon/xkbcommon.h>

#include "platform/KeyCodes.h"

namespace zelnor::platform {

namespace {

struct XkbDeleter {
  void operator()(xkb_context* context) const { xkb_context_unref(context); }
  void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
};

struct ModifierName {
  std::string_view name;
  std::uint32_t bit;
};

constexpr std::array kPortalNames{ModifierName{"CTRL+", HotkeyConfiguration::kControl},
                                  ModifierName{"ALT+", HotkeyConfiguration::kOption},
                                  ModifierName{"SHIFT+", HotkeyConfiguration::kShift},
                                  ModifierName{"LOGO+", HotkeyConfiguration::kCommand}};
constexpr std::array kGnomeNames{ModifierName{"<Control>", HotkeyConfiguration::kControl},
                                 ModifierName{"<Alt>", HotkeyConfiguration::kOption},
                                 ModifierName{"<Shift>", HotkeyConfiguration::kShift},
                                 ModifierName{"<Super>", HotkeyConfiguration::kCommand}};
/// What else is read in GNOME's settings, in lower case.
constexpr std::array kGnomeReadNames{ModifierName{"control", HotkeyConfiguration::kControl},
                                     ModifierName{"ctrl", HotkeyConfiguration::kControl},
                                     ModifierName{"ctl", HotkeyConfiguration::kControl},
                                     ModifierName{"primary", HotkeyConfiguration::kControl},
                                     ModifierName{"alt", HotkeyConfiguration::kOption},
                                     ModifierName{"mod1", HotkeyConfiguration::kOption},
                                     ModifierName{"shift", HotkeyConfiguration::kShift},
                                     ModifierName{"shft", HotkeyConfiguration::kShift},
                                     ModifierName{"super", HotkeyConfiguration::kCommand},
                                     ModifierName{"mod4", HotkeyConfiguration::kCommand}};

constexpr std::uint32_t kAllModifiers = HotkeyConfiguration::kCommand |
                                        HotkeyConfiguration::kShift | HotkeyConfiguration::kOption |
                                        HotkeyConfiguration::kControl;

template <class Names>
std::string modifierText(const Names& names, std::uint32_t modifiers) {
  std::string text;
  for (const auto& [name, bit] : names) {
    if ((modifiers & bit) != 0) text += name;
  }
  return text;
}

/// The key symbol (XKB) without modifiers on an ANSI keyboard; 0 if there is none.
xkb_keysym_t ansiSymbol(std::uint32_t evdevCode) {
  const std::unique_ptr<xkb_context, XkbDeleter> context(
      xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
  if (!context) return XKB_KEY_NoSymbol;
  const xkb_rule_names ansi{
      .rules = "evdev", .model = "pc105", .layout = "us", .variant = "", .options = ""};
  const std::unique_ptr<xkb_keymap, XkbDeleter> keymap(
      xkb_keymap_new_from_names(context.get(), &ansi, XKB_KEYMAP_COMPILE_NO_FLAGS));
  if (!keymap) return XKB_KEY_NoSymbol;
  const xkb_keysym_t* symbols = nullptr;
  const int count = xkb_keymap_key_get_syms_by_level(keymap.get(), evdevCode + kX11Offset,
                                                     /*layout=*/0, /*level=*/0, &symbols);
  return count > 0 ? *symbols : XKB_KEY_NoSymbol;
}

std::string lowered(std::string_view text) {
  std::string result(text);
  for (char& character : result) character = g_ascii_tolower(character);
  return result;
}

/// Takes "<name>" off the front; the bit it stands for, 0 for one that does not matter here.
std::optional<std::uint32_t> takeModifier(std::string_view& text) {
  const auto end = text.find('>');
  if (text.empty() || text.front() != '<' || end == std::string_view::npos) return std::nullopt;
  const auto name = lowered(text.substr(1, end - 1));
  text.remove_prefix(end + 1);
  for (const auto& known : kGnomeReadNames) {
    if (known.name == name) return known.bit;
  }
  return 0;
}

bool isKey(std::string_view name, std::uint32_t evdevCode) {
  if (name.starts_with("0x")) {
    std::uint32_t code = 0;
    std::from_chars(name.data() + 2, name.data() + name.size(), code, /*base=*/16);
    return code == evdevCode + kX11Offset;
  }
  const auto symbol = xkb_keysym_from_name(std::string(name).c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
  return symbol != XKB_KEY_NoSymbol && symbol == ansiSymbol(evdevCode);
}

}  // namespace

std::optional<std::uint32_t> grabbableKey(const HotkeyConfiguration& combination) {
  if ((combination.modifiers & kAllModifiers) == 0) return std::nullopt;
  return evdevFromVirtual(combination.keyCode);
}

std::optional<std::string> portalTrigger(const HotkeyConfiguration& combination) {
  const auto key = grabbableKey(combination);
  if (!key) return std::nullopt;
  std::array<char, 64> name{};  // the longest name of a symbol is half of that
  if (xkb_keysym_get_name(ansiSymbol(*key), name.data(), name.size()) <= 0) return std::nullopt;
  return modifierText(kPortalNames, combination.modifiers) + name.data();
}

std::optional<std::string> gnomeAccelerator(const HotkeyConfiguration& combination) {
  const auto key = grabbableKey(combination);
  if (!key) return std::nullopt;
  std::array<char, 16> code{};
  // At least two digits, or it is not read as a key code.
  g_snprintf(code.data(), code.size(), "0x%02x", *key + kX11Offset);
  return modifierText(kGnomeNames, combination.modifiers) + code.data();
}

bool isSameAccelerator(const std::string& accelerator, const HotkeyConfiguration& combination) {
  const auto key = grabbableKey(combination);
  if (!key) return false;
  std::string_view rest = accelerator;
  std::uint32_t modifiers = 0;
  while (const auto bit = takeModifier(rest)) modifiers |= *bit;
  return modifiers == (combination.modifiers & kAllModifiers) && isKey(rest, *key);
}

}  // namespace zelnor::platform
