#include <csignal>
#include <filesystem>
#include <string>

#include "tests/desktop/DesktopTest.h"

namespace zelnor::test {
namespace {

class PanelTest : public DesktopTest {
 protected:
  PanelTest() {
    home_.file("docs/quarterly report.txt", "text");
    home_.file("docs/holiday.jpg");
  }

  /// Once nobody moves it any more.
  QRect settledFrame() {
    constexpr int kLooksAlike = 20;
    auto frame = client_.geometry(kPanel);
    int alike = 0;
    waitUntil([&] {
      const auto now = client_.geometry(kPanel);
      alike = now == frame ? alike + 1 : 0;
      frame = now;
      return alike == kLooksAlike;
    });
    return *frame;
  }
};

TEST_F(PanelTest, ComesWithTheKeyboardAndFindsWhatIsTyped) {
  start();
  ASSERT_TRUE(panelComes());
  client_.type("report");
  EXPECT_TRUE(shows("quarterly report.txt"));
  EXPECT_EQ(query(), "report");
  const auto window = *client_.window(kPanel);
  EXPECT_TRUE(client_.hasState(window, "_NET_WM_STATE_SKIP_TASKBAR"));
  EXPECT_TRUE(client_.hasState(window, "_NET_WM_STATE_SKIP_PAGER"));
  client_.press({"Escape"});
  EXPECT_TRUE(panelGoes());
  EXPECT_TRUE(quit());
}

TEST_F(PanelTest, ASecondStartShowsItAgainAsItWasOverAnyWindow) {
  start();
  ASSERT_TRUE(panelComes());
  client_.type("holi");
  ASSERT_TRUE(shows("holiday.jpg"));
  client_.press({"Escape"});
  ASSERT_TRUE(panelGoes());
  const auto other = client_.openWindow("other");
  ASSERT_TRUE(waitUntil([&] { return client_.isActive("other"); }));
  EXPECT_EQ(startAgain(), 0);
  EXPECT_TRUE(panelComes());
  EXPECT_EQ(query(), "holi");
  EXPECT_TRUE(shows("holiday.jpg"));
  // Shown all the while, behind the other one.
  client_.press({"Alt_L", "Tab"});
  client_.closeWindow(other);
}

TEST_F(PanelTest, StartsQuietlyWhenToldAndEndsAtOnceWhateverAsks) {
  start({QStringLiteral("--background")});
  ASSERT_TRUE(follows());
  EXPECT_EQ(startAgain({QStringLiteral("--background")}), 0);
  EXPECT_FALSE(client_.window(kPanel));
  EXPECT_TRUE(quit());
  for (const int signal : {SIGTERM, SIGINT}) {
    start();
    ASSERT_TRUE(panelComes());
    EXPECT_TRUE(endsBy(signal));
  }
  EXPECT_EQ(startAgain({QStringLiteral("--quit")}), 0);
}

TEST_F(PanelTest, IsWhereItWasLeftAlsoAfterARestart) {
  start();
  ASSERT_TRUE(panelComes());
  const auto first = *client_.geometry(kPanel);
  EXPECT_EQ(first, QRect(300, 60, 680, 520));
  // By its background, then by its lower right corner.
  client_.drag({850, 145}, {800, 245});
  const auto moved = settledFrame();
  ASSERT_NE(moved.topLeft(), first.topLeft());
  client_.drag(moved.bottomRight(), moved.bottomRight() - QPoint(500, 60));
  const auto left = settledFrame();
  ASSERT_EQ(left.size(), QSize(600, 460));
  client_.press({"Escape"});
  ASSERT_TRUE(panelGoes());
  EXPECT_EQ(startAgain(), 0);
  ASSERT_TRUE(panelComes());
  EXPECT_EQ(client_.geometry(kPanel), left);
  ASSERT_TRUE(quit());
  start();
  ASSERT_TRUE(panelComes());
  EXPECT_EQ(client_.geometry(kPanel), left);
}

TEST_F(PanelTest, HidesWhenItLosesTheKeyboardIfTheUserWantsThat) {
  for (const bool isWanted : {false, true}) {
    home_.file(".config/Zelnor/settings.json",
               isWanted ? R"({"AutoCloseOnFocusLoss": true})" : "{}");
    start();
    ASSERT_TRUE(panelComes());
    client_.type("report");
    // Its own menu is no loss.
    ASSERT_TRUE(click("排序"));
    ASSERT_TRUE(waitUntil([&] { return client_.hasMenu(); }));
    client_.press({"Escape"});
    ASSERT_TRUE(waitUntil([&] { return !client_.hasMenu(); }));
    EXPECT_TRUE(client_.window(kPanel));
    const auto other = client_.openWindow("other");
    ASSERT_TRUE(waitUntil([&] { return client_.isActive("other"); }));
    if (isWanted) {
      EXPECT_TRUE(panelGoes());
    } else {
      EXPECT_TRUE(startAgain() == 0 && panelComes());
    }
    client_.closeWindow(other);
    ASSERT_TRUE(quit());
  }
}

TEST_F(PanelTest, CannotStartWithoutItsIndex) {
  home_.file(".local/share/Zelnor/index.sqlite", std::string(8192, 'x'));
  EXPECT_EQ(startAgain(), 1);
  EXPECT_NE(read("log2").find("DatabaseManager init failed: "), std::string::npos);
  EXPECT_FALSE(client_.window(kPanel));
}

}  // namespace
}  // namespace zelnor::test
