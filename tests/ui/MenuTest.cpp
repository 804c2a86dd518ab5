#include <gtest/gtest.h>

#include <QAction>
#include <QKeySequence>
#include <QTest>

#include "ui/Menu.h"

namespace zelnor::ui {
namespace {

TEST(Menu, AShortcutThatItShowsWorksWhileItIsOpenAndClosesIt) {
  int settings = 0;
  int quits = 0;
  Menu menu(nullptr);
  menu.add({}, QStringLiteral("plain"), [] {});
  menu.add(QLatin1String("gear"), QStringLiteral("settings"), [&] { ++settings; })
      ->setShortcut(QKeySequence(QStringLiteral("Ctrl+,")));
  auto* const quit = menu.add({}, QStringLiteral("quit"), [&] { ++quits; });
  quit->setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));

  menu.popup(QPoint(0, 0));
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu));
  QTest::keyClick(&menu, Qt::Key_Comma);
  EXPECT_TRUE(menu.isVisible());
  QTest::keyClick(&menu, Qt::Key_Comma, Qt::ControlModifier);
  EXPECT_FALSE(menu.isVisible());
  EXPECT_EQ(settings, 1);

  quit->setEnabled(false);
  menu.popup(QPoint(0, 0));
  QTest::keyClick(&menu, Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(quits, 0);
}

}  // namespace
}  // namespace zelnor::ui
