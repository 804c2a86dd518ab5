#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "tests/desktop/DesktopTest.h"
#include "tests/platform_desktop/FakeWatcher.h"

namespace zelnor::test {
namespace {

const std::vector<std::string> kDefaultHotkey{"Control_L", "Alt_L", "space"};

class HotkeyTest : public DesktopTest {
 protected:
  void SetUp() override {
    home_.file("docs/quarterly report.txt");
    start({QStringLiteral("--background")});
    ASSERT_TRUE(follows());
  }
};

TEST_F(HotkeyTest, BringsUpThePanelOverAnyWindowAndLosesNoKeyTypedAfterIt) {
  const auto other = client_.openWindow("other");
  ASSERT_TRUE(waitUntil([&] { return client_.isActive("other"); }));
  client_.press(kDefaultHotkey);
  client_.type("report");
  ASSERT_TRUE(panelComes());
  EXPECT_TRUE(shows("quarterly report.txt"));
  EXPECT_EQ(query(), "report");
  // Shown already, it stays.
  client_.press(kDefaultHotkey);
  EXPECT_TRUE(panelComes());
  client_.press({"Escape"});
  EXPECT_TRUE(panelGoes());
  client_.closeWindow(other);
}

// Qt tells of a lost keyboard 100 ms late, and whoever shows the panel again meanwhile is not to
// find it deaf.
TEST_F(HotkeyTest, GivesThePanelItsCaretHoweverSoonItComesBack) {
  constexpr auto kLongest = std::chrono::milliseconds(130);
  constexpr auto kStep = std::chrono::milliseconds(5);
  client_.press(kDefaultHotkey);
  ASSERT_TRUE(panelComes());
  for (auto pause = kStep; pause <= kLongest; pause += kStep) {
    client_.press({"Escape"});
    ASSERT_TRUE(panelGoes());
    std::this_thread::sleep_for(pause);
    client_.press(kDefaultHotkey);
    ASSERT_TRUE(panelComes());
    ASSERT_TRUE(hasCaret()) << "after " << pause.count() << " ms";
  }
}

TEST_F(HotkeyTest, MayBePressedFasterThanAnybodyCan) {
  constexpr int kTimes = 200;
  for (int time = 0; time < kTimes; ++time) client_.press(kDefaultHotkey);
  EXPECT_TRUE(panelComes());
  client_.type("report");
  EXPECT_TRUE(shows("quarterly report.txt"));
  EXPECT_TRUE(quit());
}

class SettingsTest : public HotkeyTest {
 protected:
  void SetUp() override {
    HotkeyTest::SetUp();
    ASSERT_EQ(startAgain({QStringLiteral("--preferences")}), 0);
    ASSERT_TRUE(settingsCome());
  }
  bool settingsCome() {
    return waitUntil([&] { return client_.isActive(kSettings); });
  }
  [[nodiscard]] std::string stored() const { return read(".config/Zelnor/settings.json"); }
};

TEST_F(SettingsTest, ANewHotKeyCountsAtOnceAndTheDefaultComesBack) {
  ASSERT_TRUE(click("全局唤起快捷键："));
  ASSERT_TRUE(shows("全局唤起快捷键：按下快捷键"));
  // While one is recorded the old one is not heard.
  client_.press(kDefaultHotkey);
  EXPECT_TRUE(shows("全局唤起快捷键：⌃⌥Space"));
  EXPECT_FALSE(client_.window(kPanel));
  ASSERT_TRUE(click("全局唤起快捷键："));
  ASSERT_TRUE(shows("全局唤起快捷键：按下快捷键"));
  client_.press({"Super_L", "Alt_L", "k"});
  ASSERT_TRUE(shows("全局唤起快捷键：⌥⌘K"));
  client_.press({"Super_L", "Alt_L", "k"});
  EXPECT_TRUE(panelComes());
  client_.press({"Escape"});
  ASSERT_TRUE(panelGoes());
  EXPECT_TRUE(waitUntil([&] { return stored().find("HotkeyConfiguration") != std::string::npos; }));

  ASSERT_EQ(startAgain({QStringLiteral("--preferences")}), 0);
  ASSERT_TRUE(click("恢复默认"));
  ASSERT_TRUE(shows("全局唤起快捷键：⌃⌥Space"));
  client_.press(kDefaultHotkey);
  EXPECT_TRUE(panelComes());
}

TEST_F(SettingsTest, HideThePanelOnceTheUserWantsThat) {
  ASSERT_TRUE(click("失去焦点时自动关闭窗口"));
  EXPECT_TRUE(
      waitUntil([&] { return stored().find("AutoCloseOnFocusLoss") != std::string::npos; }));
  client_.press({"Escape"});
  ASSERT_TRUE(waitUntil([&] { return !client_.window(kSettings); }));
  client_.press(kDefaultHotkey);
  ASSERT_TRUE(panelComes());
  ASSERT_EQ(startAgain({QStringLiteral("--preferences")}), 0);
  EXPECT_TRUE(settingsCome());
  EXPECT_TRUE(panelGoes());
  // Closing every window ends nothing.
  client_.press({"Escape"});
  EXPECT_TRUE(waitUntil([&] { return !client_.window(kSettings); }));
  EXPECT_TRUE(isRunning());
  EXPECT_TRUE(quit());
}

TEST_F(SettingsTest, TheLoginItemIsAnEntryThatStartsItQuietly) {
  ASSERT_TRUE(click("开机自动启动"));
  const auto entry = [&] { return read(".config/autostart/zelnor.desktop"); };
  EXPECT_TRUE(waitUntil([&] { return entry().find("--background") != std::string::npos; }));
}

class TrayTest : public DesktopTest {
 protected:
  /// Entries of the menu, as the bar numbers them.
  enum Entry : std::int32_t { search = 1, preferences = 3, quit = 5 };

  void SetUp() override {
    start({QStringLiteral("--background")});
    runLoopUntil([&] { return !watcher_.items().empty(); });
  }
  void choose(Entry entry) {
    watcher_.ask("/MenuBar", "com.canonical.dbusmenu", "Event",
                 g_variant_new("(isvu)", entry, "clicked", g_variant_new_int32(0), 0U));
  }

  FakeWatcher watcher_{std::getenv("DBUS_SESSION_BUS_ADDRESS"), /*hasHost=*/true};
};

TEST_F(TrayTest, ItsMenuShowsThePanelAndTheSettingsAndQuits) {
  choose(Entry::search);
  EXPECT_TRUE(panelComes());
  choose(Entry::preferences);
  EXPECT_TRUE(waitUntil([&] { return client_.isActive(kSettings); }));
  choose(Entry::quit);
  EXPECT_TRUE(waitUntil([&] { return !isRunning(); }));
}

}  // namespace
}  // namespace zelnor::test
