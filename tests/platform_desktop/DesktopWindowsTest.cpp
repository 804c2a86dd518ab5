#include <gtest/gtest.h>

#include <QTest>
#include <QWidget>

#include "platform/desktop/DesktopWindows.h"

namespace zelnor::platform {
namespace {

class Window final : public QWidget {
 public:
  int shown = 0;

 protected:
  void showEvent(QShowEvent* event) override {
    QWidget::showEvent(event);
    ++shown;
  }
};

TEST(DesktopWindows, AWindowBehindAnotherComesAnewWhereNothingProvesThatTheUserWantsIt) {
  DesktopWindows windows;
  Window panel;
  panel.show();
  windows.activate(*panel.windowHandle(), /*activation=*/{});
  EXPECT_EQ(panel.shown, 1);  // on its way already
  ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
  windows.activate(*panel.windowHandle(), /*activation=*/{});
  EXPECT_EQ(panel.shown, 1);  // in front already

  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  windows.activate(*panel.windowHandle(), /*activation=*/{});
  EXPECT_EQ(panel.shown, 2);
  EXPECT_TRUE(QTest::qWaitForWindowActive(&panel));

  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  windows.activate(*panel.windowHandle(), {.token = "proof"});
  EXPECT_EQ(panel.shown, 2);
  EXPECT_TRUE(QTest::qWaitForWindowActive(&panel));
  qunsetenv("XDG_ACTIVATION_TOKEN");
}

}  // namespace
}  // namespace zelnor::platform
