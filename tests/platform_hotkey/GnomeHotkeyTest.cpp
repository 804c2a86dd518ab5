#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/desktop/QtMainExecutor.h"
#include "platform/desktop/hotkey/Combination.h"
#include "platform/desktop/hotkey/GnomeHotkey.h"
#include "platform/desktop/hotkey/GnomeShortcut.h"
#include "tests/platform_hotkey/EventLoop.h"
#include "tests/platform_hotkey/GnomeSettings.h"

namespace zelnor::platform {
namespace {

using test::runUntil;

using Strings = std::vector<std::string>;

constexpr const char* kFolder = "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/";
const std::string kOurs = std::string(kFolder) + "zelnor/";
const std::string kUsers = std::string(kFolder) + "custom0/";

class GnomeShortcutTest : public testing::Test {
 protected:
  GnomeShortcutTest() {
    settings_.setList({kUsers});
    settings_.setShortcutAt(kUsers, "<Control><Alt>t");
  }
  ~GnomeShortcutTest() override { shortcut_.remove(); }

  std::optional<int> install(const HotkeyConfiguration& combination = {}) {
    return shortcut_.install(combination, "'/opt/a b/zelnor'");
  }

  test::GnomeSettings settings_;
  GnomeShortcut shortcut_ = *GnomeShortcut::find();
};

TEST_F(GnomeShortcutTest, IsMadeReplacedAndRemovedBesideTheUsers) {
  EXPECT_EQ(install(), std::nullopt);
  EXPECT_EQ(settings_.list(), (Strings{kUsers, kOurs}));
  EXPECT_EQ(settings_.shortcutAt(kOurs), "Zelnor|'/opt/a b/zelnor'|<Control><Alt>0x41");
  EXPECT_EQ(install({.keyCode = 3, .modifiers = HotkeyConfiguration::kCommand}), std::nullopt);
  EXPECT_EQ(settings_.list(), (Strings{kUsers, kOurs}));
  EXPECT_EQ(settings_.shortcutAt(kOurs), "Zelnor|'/opt/a b/zelnor'|<Super>0x29");
  shortcut_.remove();
  shortcut_.remove();
  EXPECT_EQ(settings_.list(), Strings{kUsers});
  EXPECT_EQ(settings_.shortcutAt(kOurs), "||");
  EXPECT_EQ(settings_.shortcutAt(kUsers), "||<Control><Alt>t");
}

TEST_F(GnomeShortcutTest, WhatIsUsedInTheDesktopIsRefusedAndThenThereIsNone) {
  constexpr HotkeyConfiguration kControlAltT{
      .keyCode = 17, .modifiers = HotkeyConfiguration::kControl | HotkeyConfiguration::kOption};
  constexpr HotkeyConfiguration kSuperH{.keyCode = 4, .modifiers = HotkeyConfiguration::kCommand};
  constexpr HotkeyConfiguration kSuperTab{.keyCode = 48,
                                          .modifiers = HotkeyConfiguration::kCommand};
  settings_.setWindowKey({"<Alt>Tab", "<Super>Tab"});
  // The user may have put anything into the list.
  settings_.setList({"", "no path", "/a//b/", kUsers});
  for (const auto& taken : {kControlAltT, kSuperH, kSuperTab}) {
    ASSERT_EQ(install(), std::nullopt);
    EXPECT_EQ(install(taken), kHotkeyTaken) << taken.displayString();
    EXPECT_EQ(settings_.list(), (Strings{"", "no path", "/a//b/", kUsers}));
    EXPECT_EQ(settings_.shortcutAt(kOurs), "||");
  }
  EXPECT_EQ(install({.keyCode = 17, .modifiers = 0}), kHotkeyImpossible);
  settings_.setList({kUsers});
}

TEST_F(GnomeShortcutTest, OneThatAnEarlierRunLeftBehindIsTakenOver) {
  settings_.setList({kOurs, kUsers});
  settings_.setShortcutAt(kOurs, "<Control><Alt>space");
  EXPECT_EQ(install(), std::nullopt);
  EXPECT_EQ(settings_.list(), (Strings{kUsers, kOurs}));
}

TEST_F(GnomeShortcutTest, ADesktopWithoutTheseSettingsHasNone) {
  auto* const foreign = test::foreignSchemas();
  EXPECT_FALSE(GnomeShortcut::find(foreign));
  EXPECT_FALSE(GnomeShortcut::find(/*schemas=*/nullptr));
  g_settings_schema_source_unref(foreign);
}

TEST(GnomeHotkey, WorksOffTheMainThreadAndLeavesNothingBehind) {
  test::GnomeSettings settings;
  const QtMainExecutor main;
  std::vector<int> refusals;
  const auto refused = [&](int code) { refusals.push_back(code); };
  {
    GnomeHotkey hotkey(main.executor(), "zelnor");
    hotkey.release();
    hotkey.grab({}, /*pressed=*/nullptr, refused);
    ASSERT_TRUE(runUntil([&] { return settings.changes() == 1; }));
    EXPECT_EQ(settings.list(), Strings{kOurs});
    EXPECT_EQ(settings.shortcutAt(kOurs), "Zelnor|'zelnor'|<Control><Alt>0x41");
    hotkey.grab({.keyCode = 4, .modifiers = HotkeyConfiguration::kCommand}, /*pressed=*/nullptr,
                refused);
    ASSERT_TRUE(runUntil([&] { return !refusals.empty(); }));
    hotkey.grab({}, /*pressed=*/nullptr, refused);
  }
  EXPECT_EQ(settings.list(), Strings());
  EXPECT_EQ(settings.shortcutAt(kOurs), "||");
  test::runFor(std::chrono::milliseconds(1));
  EXPECT_EQ(refusals, std::vector<int>{kHotkeyTaken});
}

}  // namespace
}  // namespace zelnor::platform
