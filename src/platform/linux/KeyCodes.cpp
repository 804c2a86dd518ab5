#include "platform/KeyCodes.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>

namespace zelnor::platform {

namespace {

struct Key {
  std::uint32_t keyCode;
  std::uint32_t evdev;
  char character = '\0';
};

constexpr std::array kKeys{
    // Letters and digits.
    Key{0, KEY_A, 'a'},
    Key{1, KEY_S, 's'},
    Key{2, KEY_D, 'd'},
    Key{3, KEY_F, 'f'},
    Key{4, KEY_H, 'h'},
    Key{5, KEY_G, 'g'},
    Key{6, KEY_Z, 'z'},
    Key{7, KEY_X, 'x'},
    Key{8, KEY_C, 'c'},
    Key{9, KEY_V, 'v'},
    Key{11, KEY_B, 'b'},
    Key{12, KEY_Q, 'q'},
    Key{13, KEY_W, 'w'},
    Key{14, KEY_E, 'e'},
    Key{15, KEY_R, 'r'},
    Key{16, KEY_Y, 'y'},
    Key{17, KEY_T, 't'},
    Key{18, KEY_1, '1'},
    Key{19, KEY_2, '2'},
    Key{20, KEY_3, '3'},
    Key{21, KEY_4, '4'},
    Key{22, KEY_6, '6'},
    Key{23, KEY_5, '5'},
    Key{25, KEY_9, '9'},
    Key{26, KEY_7, '7'},
    Key{28, KEY_8, '8'},
    Key{29, KEY_0, '0'},
    Key{31, KEY_O, 'o'},
    Key{32, KEY_U, 'u'},
    Key{34, KEY_I, 'i'},
    Key{35, KEY_P, 'p'},
    Key{37, KEY_L, 'l'},
    Key{38, KEY_J, 'j'},
    Key{40, KEY_K, 'k'},
    Key{45, KEY_N, 'n'},
    Key{46, KEY_M, 'm'},
    // The rest of the main block.
    Key{10, KEY_102ND},
    Key{24, KEY_EQUAL},
    Key{27, KEY_MINUS},
    Key{30, KEY_RIGHTBRACE},
    Key{33, KEY_LEFTBRACE},
    Key{36, KEY_ENTER},
    Key{39, KEY_APOSTROPHE},
    Key{41, KEY_SEMICOLON},
    Key{42, KEY_BACKSLASH},
    Key{43, KEY_COMMA},
    Key{44, KEY_SLASH},
    Key{47, KEY_DOT},
    Key{48, KEY_TAB},
    Key{49, KEY_SPACE},
    Key{50, KEY_GRAVE},
    Key{51, KEY_BACKSPACE},
    Key{53, KEY_ESC},
    Key{110, KEY_COMPOSE},
    // Function keys. On some systems those after F12 stand for the keys that a PC has in their
    // place; here both are themselves, and a PC's keys have numbers behind the last of the others.
    Key{128, KEY_SYSRQ},
    Key{129, KEY_SCROLLLOCK},
    Key{130, KEY_PAUSE},
    Key{122, KEY_F1},
    Key{120, KEY_F2},
    Key{99, KEY_F3},
    Key{118, KEY_F4},
    Key{96, KEY_F5},
    Key{97, KEY_F6},
    Key{98, KEY_F7},
    Key{100, KEY_F8},
    Key{101, KEY_F9},
    Key{109, KEY_F10},
    Key{103, KEY_F11},
    Key{111, KEY_F12},
    Key{105, KEY_F13},
    Key{107, KEY_F14},
    Key{113, KEY_F15},
    Key{106, KEY_F16},
    Key{64, KEY_F17},
    Key{79, KEY_F18},
    Key{80, KEY_F19},
    Key{90, KEY_F20},
    // Arrows and their neighbours.
    Key{123, KEY_LEFT},
    Key{124, KEY_RIGHT},
    Key{125, KEY_DOWN},
    Key{126, KEY_UP},
    Key{114, KEY_INSERT},
    Key{115, KEY_HOME},
    Key{116, KEY_PAGEUP},
    Key{117, KEY_DELETE},
    Key{119, KEY_END},
    Key{121, KEY_PAGEDOWN},
    // Keypad.
    Key{65, KEY_KPDOT},
    Key{67, KEY_KPASTERISK},
    Key{69, KEY_KPPLUS},
    Key{71, KEY_NUMLOCK},
    Key{75, KEY_KPSLASH},
    Key{76, KEY_KPENTER},
    Key{78, KEY_KPMINUS},
    Key{81, KEY_KPEQUAL},
    Key{82, KEY_KP0},
    Key{83, KEY_KP1},
    Key{84, KEY_KP2},
    Key{85, KEY_KP3},
    Key{86, KEY_KP4},
    Key{87, KEY_KP5},
    Key{88, KEY_KP6},
    Key{89, KEY_KP7},
    Key{91, KEY_KP8},
    Key{92, KEY_KP9},
    // Sound.
    Key{72, KEY_VOLUMEUP},
    Key{73, KEY_VOLUMEDOWN},
    Key{74, KEY_MUTE},
};

}  // namespace

std::optional<std::uint32_t> evdevFromVirtual(std::uint32_t keyCode) {
  const auto* const found = std::ranges::find(kKeys, keyCode, &Key::keyCode);
  return found == kKeys.end() ? std::nullopt : std::optional(found->evdev);
}

std::optional<std::uint32_t> virtualFromEvdev(std::uint32_t evdevCode) {
  const auto* const found = std::ranges::find(kKeys, evdevCode, &Key::evdev);
  return found == kKeys.end() ? std::nullopt : std::optional(found->keyCode);
}

std::optional<char> characterAt(std::uint32_t keyCode) {
  const auto* const found = std::ranges::find(kKeys, keyCode, &Key::keyCode);
  if (found == kKeys.end() || found->character == '\0') return std::nullopt;
  return found->character;
}

}  // namespace zelnor::platform
