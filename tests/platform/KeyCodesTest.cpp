#include <linux/input-event-codes.h>

#include <map>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "platform/KeyCodes.h"

namespace zelnor::platform {
namespace {

constexpr std::uint32_t kBeyondAllKeys = 1024;

std::vector<std::uint32_t> range(std::uint32_t first, std::uint32_t last) {
  std::vector<std::uint32_t> codes;
  for (auto code = first; code <= last; ++code) codes.push_back(code);
  return codes;
}

TEST(KeyCodes, WhatIsRecordedIsWhatIsGrabbed) {
  std::set<std::uint32_t> evdevCodes;
  for (const auto keyCode : range(0, kBeyondAllKeys)) {
    const auto evdev = evdevFromVirtual(keyCode);
    if (!evdev) continue;
    EXPECT_EQ(virtualFromEvdev(*evdev), keyCode);
    EXPECT_TRUE(evdevCodes.insert(*evdev).second) << "two codes for evdev " << *evdev;
  }
  for (const auto evdev : range(0, kBeyondAllKeys)) {
    EXPECT_EQ(virtualFromEvdev(evdev).has_value(), evdevCodes.contains(evdev)) << evdev;
  }
}

TEST(KeyCodes, EveryKeyOfAnAnsiKeyboardThatIsNoModifierHasOne) {
  // As the rows of the kernel's header stand on the keyboard.
  const std::vector<std::vector<std::uint32_t>> rows{
      range(KEY_ESC, KEY_TAB),
      range(KEY_Q, KEY_ENTER),
      range(KEY_A, KEY_GRAVE),
      range(KEY_BACKSLASH, KEY_SLASH),
      {KEY_SPACE, KEY_COMPOSE, KEY_SYSRQ, KEY_SCROLLLOCK, KEY_PAUSE},
      range(KEY_F1, KEY_F10),
      {KEY_F11, KEY_F12},
      range(KEY_F13, KEY_F20),
      {KEY_KPASTERISK, KEY_NUMLOCK, KEY_KPENTER, KEY_KPSLASH},
      range(KEY_KP7, KEY_KPDOT),
      range(KEY_HOME, KEY_DELETE)};
  for (const auto& row : rows) {
    for (const auto evdev : row) EXPECT_TRUE(virtualFromEvdev(evdev)) << evdev;
  }
  for (const auto modifier :
       {KEY_LEFTCTRL, KEY_RIGHTCTRL, KEY_LEFTSHIFT, KEY_RIGHTSHIFT, KEY_LEFTALT, KEY_RIGHTALT,
        KEY_LEFTMETA, KEY_RIGHTMETA, KEY_CAPSLOCK}) {
    EXPECT_FALSE(virtualFromEvdev(static_cast<std::uint32_t>(modifier))) << modifier;
  }
}

TEST(KeyCodes, ThePositionsOfTheOtherNumberingAreKnown) {
  // One of each neighbourhood, and those that stand out of order.
  const std::map<std::uint32_t, int> known{
      {0, KEY_A},        {4, KEY_H},          {5, KEY_G},           {13, KEY_W},
      {16, KEY_Y},       {17, KEY_T},         {22, KEY_6},          {23, KEY_5},
      {26, KEY_7},       {29, KEY_0},         {30, KEY_RIGHTBRACE}, {33, KEY_LEFTBRACE},
      {36, KEY_ENTER},   {37, KEY_L},         {38, KEY_J},          {49, KEY_SPACE},
      {50, KEY_GRAVE},   {51, KEY_BACKSPACE}, {53, KEY_ESC},        {96, KEY_F5},
      {99, KEY_F3},      {118, KEY_F4},       {120, KEY_F2},        {122, KEY_F1},
      {117, KEY_DELETE}, {121, KEY_PAGEDOWN}, {123, KEY_LEFT},      {124, KEY_RIGHT},
      {125, KEY_DOWN},   {126, KEY_UP},       {76, KEY_KPENTER},    {89, KEY_KP7},
      {91, KEY_KP8}};
  for (const auto& [keyCode, evdev] : known) {
    EXPECT_EQ(evdevFromVirtual(keyCode), static_cast<std::uint32_t>(evdev)) << keyCode;
  }
}

}  // namespace
}  // namespace zelnor::platform
