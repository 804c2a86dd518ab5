#include <algorithm>
#include <span>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/HotkeyConfiguration.h"
#include "tests/support/MemoryDefaultsStore.h"

namespace zelnor::platform {
namespace {

using Bytes = DefaultsStore::Bytes;

constexpr std::string_view kStoredAs = "HotkeyConfiguration";
constexpr auto kCommand = HotkeyConfiguration::kCommand;
constexpr auto kShift = HotkeyConfiguration::kShift;
constexpr auto kOption = HotkeyConfiguration::kOption;
constexpr auto kControl = HotkeyConfiguration::kControl;

Bytes bytes(std::string_view text) {
  const auto view = std::as_bytes(std::span(text));
  return {view.begin(), view.end()};
}

TEST(HotkeyConfiguration, UsersReadSymbolsAndTheKey) {
  struct Case {
    HotkeyConfiguration combination;
    std::string text;
  };
  for (const auto& [combination, text] :
       {Case{{}, "⌃⌥Space"}, Case{{.keyCode = 3, .modifiers = kCommand | kShift}, "⌘⇧F"},
        Case{{.keyCode = 40, .modifiers = kShift | kCommand | kOption | kControl}, "⌃⌥⌘⇧K"},
        Case{{.keyCode = 122, .modifiers = kCommand}, "⌘K122"},
        Case{{.keyCode = 36, .modifiers = kShift}, "⇧Return"},
        Case{{.keyCode = 48, .modifiers = kOption}, "⌥Tab"},
        Case{{.keyCode = 51, .modifiers = kControl}, "⌃Delete"},
        Case{{.keyCode = 29, .modifiers = kControl}, "⌃0"},
        Case{{.keyCode = 24, .modifiers = kControl}, "⌃K24"},  // "=" has no name here
        Case{{.keyCode = 4294967295, .modifiers = 0x8000}, "K4294967295"}}) {
    EXPECT_EQ(combination.displayString(), text);
  }
}

TEST(HotkeyConfiguration, IsStoredAsJsonAndFoundAgain) {
  test::MemoryDefaultsStore defaults;
  EXPECT_EQ(HotkeyConfiguration::load(defaults),
            (HotkeyConfiguration{.keyCode = 49, .modifiers = 0x1800}));
  HotkeyConfiguration().save(defaults);
  EXPECT_EQ(defaults.get<Bytes>(kStoredAs), bytes(R"({"keyCode":49,"modifiers":6144})"));
  defaults.set(kStoredAs, bytes(R"({"keyCode":3,"modifiers":256})"));
  const auto loaded = HotkeyConfiguration::load(defaults);
  EXPECT_EQ(loaded, (HotkeyConfiguration{.keyCode = 3, .modifiers = kCommand}));
  loaded.save(defaults);
  EXPECT_EQ(HotkeyConfiguration::load(defaults), loaded);
}

TEST(HotkeyConfiguration, WhatMakesNoSenseIsTheDefaultAndStaysStored) {
  test::MemoryDefaultsStore defaults;
  for (const std::string_view text :
       {"", "hot key", "\xff", "[]", "3", R"({"keyCode":3})", R"({"modifiers":256})",
        R"({"keyCode":"3","modifiers":256})", R"({"keyCode":-3,"modifiers":256})",
        R"({"keyCode":3.5,"modifiers":256})", R"({"keyCode":4294967296,"modifiers":256})",
        R"({"keyCode":3,"modifiers":null})", R"({"keyCode":3,"modifiers":256)"}) {
    defaults.set(kStoredAs, bytes(text));
    EXPECT_EQ(HotkeyConfiguration::load(defaults), HotkeyConfiguration()) << text;
    EXPECT_EQ(defaults.get<Bytes>(kStoredAs), bytes(text));
  }
  defaults.set(kStoredAs, std::string("text"));
  EXPECT_EQ(HotkeyConfiguration::load(defaults), HotkeyConfiguration());
}

}  // namespace
}  // namespace zelnor::platform
