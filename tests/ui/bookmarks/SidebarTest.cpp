#include <QAccessible>
#include <QFontMetrics>
#include <QLineEdit>
#include <QScrollBar>

#include "tests/ui/bookmarks/BookmarksFixture.h"
#include "ui/Typography.h"
#include "ui/bookmarks/BookmarkRowGeometry.h"

namespace zelnor::ui {
namespace {

class SidebarTest : public SidebarFixture {
 protected:
  void clickAt(const QPoint& at) {
    mouse(QEvent::MouseButtonPress, at);
    mouse(QEvent::MouseButtonRelease, at, Qt::NoButton);
  }
  void clickEllipsis(const std::string& heading) {
    const auto row = list_->visualRect(rowOf(heading));
    clickAt(BookmarkRowGeometry::ofHeading(row, /*hasMenu=*/true).button.center());
  }
  /// Where rows meet: above the one called `name`, or below it.
  [[nodiscard]] QPoint above(const std::string& name) const {
    return middleOf(name) - QPoint(0, 10);
  }
  [[nodiscard]] QPoint below(const std::string& name) const {
    return middleOf(name) + QPoint(0, 10);
  }
  void takeTo(const std::string& name, const QPoint& to) {
    mouse(QEvent::MouseButtonPress, middleOf(name));
    mouse(QEvent::MouseMove, (middleOf(name) + to) / 2);
    mouse(QEvent::MouseMove, to);
  }
  void drop(const QPoint& at) { mouse(QEvent::MouseButtonRelease, at, Qt::NoButton); }
};

TEST_F(SidebarTest, BeginsWithOneHeadingAndGetsCategoriesAtOnce) {
  EXPECT_EQ(list_->model()->rowCount(), 1);
  EXPECT_EQ(rowOf("未分类").data(BookmarksModel::hasMenuRole).toBool(), false);
  press(u"新建分类");
  press(u"新建分类");
  ASSERT_EQ(bookmarks_.categories().size(), 3U);
  for (int row = 1; row < 3; ++row) {
    const auto heading = list_->model()->index(row, 0);
    EXPECT_EQ(heading.data().toString(), QStringLiteral(u"新分类"));
    EXPECT_TRUE(heading.data(BookmarksModel::hasMenuRole).toBool());
  }
  for (const auto reason : {QContextMenuEvent::Mouse, QContextMenuEvent::Keyboard}) {
    openMenu("未分类", reason);
    EXPECT_EQ(menu(), nullptr);
  }
  clickEllipsis("未分类");
  EXPECT_EQ(menu(), nullptr);
}

TEST_F(SidebarTest, AppliesABookmarkByClickReturnAndSpace) {
  add("abc");
  clickAt(middleOf("a"));
  EXPECT_EQ(chosen_, "a");
  mouse(QEvent::MouseButtonDblClick, middleOf("a"));
  drop(middleOf("a"));
  EXPECT_EQ(chosen_, "a") << "a double click applies once";
  clickAt(middleOf("未分类"));
  clickAt(below("c") + QPoint(0, 100));
  goTo("b");
  key(Qt::Key_Return);
  key(Qt::Key_Down);
  key(Qt::Key_Space);
  EXPECT_EQ(chosen_, "abc");
}

TEST_F(SidebarTest, TheKeyboardGoesFromTopToBottomAndBeginsAtTheFirstBookmark) {
  add("ab");
  auto* const header = sidebar_->findChild<QPushButton*>();
  header->setFocus(Qt::TabFocusReason);
  EXPECT_EQ(header->accessibleName(), QStringLiteral(u"新建书签"));
  QTest::keyClick(header, Qt::Key_Tab);
  EXPECT_TRUE(list_->hasFocus());
  EXPECT_EQ(current(), "a");
  key(Qt::Key_Up);
  EXPECT_EQ(current(), "未分类");
}

TEST_F(SidebarTest, DeletesTheBookmarkThatWasMeantThoughRowsHaveMoved) {
  add("abcd");
  openMenu("b", QContextMenuEvent::Mouse);
  bookmarks_.moveBookmarks({0}, 4);
  pick(u"删除");
  EXPECT_EQ(names(), "cda");
  openMenu("d", QContextMenuEvent::Keyboard);
  bookmarks_.deleteBookmark(bookmarks_.bookmarks()[1].id);
  pick(u"删除");
  EXPECT_EQ(names(), "ca");
  goTo("c");
  key(Qt::Key_Delete);
  EXPECT_EQ(names(), "a");
  EXPECT_EQ(current(), "a");
  goTo("未分类");
  key(Qt::Key_Delete);
  EXPECT_EQ(names(), "a");
}

TEST_F(SidebarTest, AHeadingsMenuOpensByMouseAndKeyboard) {
  const auto work = addCategory("R&D");
  add("xy", work);
  add("a");
  clickEllipsis("R&D");
  pick(u"重命名");
  auto* const field = panel_.findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  EXPECT_EQ(field->text(), QStringLiteral(u"R&D"));
  QTest::keyClicks(field, QStringLiteral(u"R&&D "));
  press(u"确定");
  EXPECT_EQ(bookmarks_.categories()[1].name, "R&&D ");
  EXPECT_EQ(rowOf("R&&D ").row(), 2);

  goTo("R&&D ");
  key(Qt::Key_Return);
  const auto other = addCategory("other");
  pick(u"删除分类");
  EXPECT_EQ(bookmarks_.categories()[1].id, other);
  EXPECT_EQ(names(), "xya") << "by the order that they have among all";
}

TEST_F(SidebarTest, StaysWhereTheUserIsWhileOtherRowsComeAndGo) {
  const auto work = addCategory("work");
  for (int i = 0; i < 200; ++i) {
    bookmarks_.addBookmark("n" + std::to_string(i), "", {}, i < 100 ? Uuid() : work);
  }
  QApplication::processEvents();
  goTo("n150");
  const auto scrolled = list_->verticalScrollBar()->value();
  ASSERT_GT(scrolled, 0);
  add("z", work);
  bookmarks_.renameCategory(work, "play");
  bookmarks_.moveBookmarksInCategory(work, {99}, 90);
  bookmarks_.deleteBookmark(bookmarks_.bookmarks().back().id);
  QApplication::processEvents();
  EXPECT_EQ(current(), "n150");
  EXPECT_TRUE(list_->hasFocus());
  EXPECT_EQ(list_->verticalScrollBar()->value(), scrolled);
}

TEST_F(SidebarTest, ADraggedBookmarkEndsWhereItIsDropped) {
  const auto work = addCategory("work");
  add("abc");
  add("XYZ", work);
  takeTo("a", below("b"));
  EXPECT_EQ(list_->viewport()->cursor().shape(), Qt::ClosedHandCursor);
  drop(below("b"));
  EXPECT_EQ(names(), "bac");
  takeTo("c", above("b"));
  drop(above("b"));
  EXPECT_EQ(names(), "cba");
  takeTo("X", below("Z") + QPoint(0, 15));
  drop(below("Z") + QPoint(0, 15));
  EXPECT_EQ(names(work), "YZX");
  takeTo("c", above("b"));
  drop(above("b"));
  EXPECT_EQ(names(), "cba") << "dropped where it was";
  EXPECT_EQ(chosen_, "") << "a drag is no click";
}

TEST_F(SidebarTest, ADropElsewhereAndEscapeLeaveEverythingAsItWas) {
  const auto work = addCategory("work");
  add("abc");
  add("XYZ", work);
  const auto right = QPoint(list_->width() + 30, middleOf("c").y());
  for (const auto& elsewhere : {middleOf("Y"), right, QPoint(10, -30)}) {
    takeTo("a", elsewhere);
    EXPECT_EQ(list_->viewport()->cursor().shape(), Qt::ForbiddenCursor);
    drop(elsewhere);
  }
  auto* const other = new QLineEdit(&panel_);
  other->show();
  other->setFocus();
  takeTo("a", below("c"));
  QTest::keyClick(other, Qt::Key_Escape);
  drop(below("c"));
  EXPECT_EQ(names() + names(work), "abcXYZ");
  EXPECT_EQ(chosen_, "");
  takeTo("a", below("c"));
  bookmarks_.deleteBookmark(bookmarks_.bookmarks()[0].id);
  drop(below("c"));
  EXPECT_EQ(names(), "bc");
}

TEST_F(SidebarTest, ADragGoesOnBeyondTheEdgesOfTheList) {
  add("abcdefghijklmnopqrstuvwxyz");
  QApplication::processEvents();
  auto* const bar = list_->verticalScrollBar();
  ASSERT_GT(bar->maximum(), 0);
  const QPoint bottom(20, list_->viewport()->height() - 4);
  takeTo("b", bottom);
  ASSERT_TRUE(QTest::qWaitFor([&] { return bar->value() == bar->maximum(); }, 20'000));
  drop(bottom);
  EXPECT_EQ(names(), "acdefghijklmnopqrstuvwxyzb");
  const QPoint top(20, 4);
  takeTo("z", top);
  ASSERT_TRUE(QTest::qWaitFor([&] { return bar->value() == 0; }, 20'000));
  drop(above("a"));
  EXPECT_EQ(names(), "zacdefghijklmnopqrstuvwxyb");
}

TEST_F(SidebarTest, AltAndAnArrowMoveABookmarkWithinItsSection) {
  const auto work = addCategory("work");
  add("abc");
  add("XY", work);
  goTo("b");
  key(Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(names(), "bac");
  key(Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(names(), "bac");
  for (int i = 0; i < 3; ++i) key(Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(names(), "acb");
  EXPECT_EQ(current(), "b");
  EXPECT_EQ(names(work), "XY");
}

TEST_F(SidebarTest, ReadsAsNameAndDescription) {
  bookmarks_.addBookmark("大文件", "iso", {}, {});
  EXPECT_EQ(list_->accessibleName(), QStringLiteral(u"书签"));
  auto* const rows = QAccessible::queryAccessibleInterface(list_);
  ASSERT_NE(rows, nullptr);
  ASSERT_EQ(rows->childCount(), 2);
  EXPECT_EQ(rows->child(0)->text(QAccessible::Description), QStringLiteral(u"分类"));
  EXPECT_EQ(rows->child(1)->text(QAccessible::Name), QStringLiteral(u"大文件"));
  EXPECT_EQ(rows->child(1)->text(QAccessible::Description), QStringLiteral(u"\"iso\""));
  EXPECT_EQ(rows->child(1)->role(), QAccessible::ListItem);
}

TEST_F(SidebarTest, TheLinesOfARowDoNotOverlapAtAnySizeOfType) {
  const auto usual = QApplication::font();
  for (const double points : {10.0, 13.2, 22.0}) {
    auto font = usual;
    font.setPointSizeF(points);
    QApplication::setFont(font);
    const QRect row(0, 50, 220, BookmarkRowGeometry::bookmarkHeight());
    const auto parts = BookmarkRowGeometry::ofBookmark(row);
    EXPECT_GE(parts.description.top(), parts.name.bottom() + 2);
    EXPECT_GE(parts.description.height(), QFontMetrics(type::font(type::kCaption)).height());
    EXPECT_GE(parts.name.height(), QFontMetrics(type::font(type::kLabel)).height());
    EXPECT_TRUE(row.contains(parts.name.united(parts.description)));
    const QRect line(0, 50, 220, BookmarkRowGeometry::headingHeight());
    const auto heading = BookmarkRowGeometry::ofHeading(line, /*hasMenu=*/true);
    EXPECT_GE(heading.name.height(), QFontMetrics(type::font(type::kCaption)).height());
    EXPECT_FALSE(heading.name.intersects(heading.button));
  }
  QApplication::setFont(usual);
}

}  // namespace
}  // namespace zelnor::ui
