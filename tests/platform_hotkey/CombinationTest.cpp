#include <string>

#include <gtest/gtest.h>

#include "platform/desktop/hotkey/Combination.h"

namespace zelnor::platform {
namespace {

constexpr auto kCommand = HotkeyConfiguration::kCommand;
constexpr auto kShift = HotkeyConfiguration::kShift;
constexpr auto kOption = HotkeyConfiguration::kOption;
constexpr auto kControl = HotkeyConfiguration::kControl;

TEST(Combination, IsWrittenAsEachDesktopReadsIt) {
  struct Case {
    HotkeyConfiguration combination;
    std::string trigger;
    std::string accelerator;
  };
  for (const auto& [combination, trigger, accelerator] :
       {Case{{}, "CTRL+ALT+space", "<Control><Alt>0x41"},
        Case{{.keyCode = 12, .modifiers = kCommand | kShift}, "SHIFT+LOGO+q", "<Shift><Super>0x18"},
        Case{{.keyCode = 122, .modifiers = kOption}, "ALT+F1", "<Alt>0x43"},
        Case{{.keyCode = 36, .modifiers = kControl}, "CTRL+Return", "<Control>0x24"},
        Case{{.keyCode = 43, .modifiers = kControl}, "CTRL+comma", "<Control>0x3b"},
        Case{{.keyCode = 126, .modifiers = kControl}, "CTRL+Up", "<Control>0x6f"},
        Case{{.keyCode = 53, .modifiers = kControl}, "CTRL+Escape", "<Control>0x09"}}) {
    EXPECT_EQ(portalTrigger(combination), trigger);
    EXPECT_EQ(gnomeAccelerator(combination), accelerator);
    EXPECT_TRUE(isSameAccelerator(accelerator, combination));
  }
  EXPECT_EQ(portalTrigger({.keyCode = 49, .modifiers = 0}), std::nullopt);
  EXPECT_EQ(gnomeAccelerator({.keyCode = 4242, .modifiers = kOption}), std::nullopt);
}

TEST(Combination, EveryKeyHasANameOfItsOwnForThePortal) {
  constexpr std::uint32_t kF19 = 80;  // which no layout gives a symbol
  std::map<std::string, std::uint32_t> triggers;
  for (std::uint32_t keyCode = 0; keyCode < 200; ++keyCode) {
    const HotkeyConfiguration combination{.keyCode = keyCode, .modifiers = kOption};
    if (!grabbableKey(combination) || keyCode == kF19) continue;
    const auto trigger = portalTrigger(combination);
    ASSERT_TRUE(trigger && *trigger != "ALT+NoSymbol") << keyCode;
    EXPECT_TRUE(triggers.emplace(*trigger, keyCode).second) << *trigger;
  }
  EXPECT_GT(triggers.size(), 100U);
}

TEST(Combination, IsRecognisedInGnomesSpellings) {
  const HotkeyConfiguration controlAltT{.keyCode = 17, .modifiers = kControl | kOption};
  for (const char* same : {"<Control><Alt>t", "<Alt><Primary>T", "<ctrl><MOD1>0x1c"}) {
    EXPECT_TRUE(isSameAccelerator(same, controlAltT)) << same;
  }
  for (const char* other : {"", "t", "<Control><Alt>", "<Control><Alt>r", "<Control><Alt><Shift>t",
                            "<Control>t", "disabled", "<Control><Alt", "<Control><Alt>0x", "0x1c",
                            "<Control><Alt>0xffffffffffffffffff"}) {
    EXPECT_FALSE(isSameAccelerator(other, controlAltT)) << other;
  }
}

}  // namespace
}  // namespace zelnor::platform
