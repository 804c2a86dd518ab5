#include <optional>

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include "search/SearchServices.h"
#include "search/SearchViewModel.h"
#include "tests/search_viewmodel/FakeSearchSource.h"
#include "tests/support/ManualClock.h"
#include "tests/support/MemoryDefaultsStore.h"
#include "tests/ui/bookmarks/BookmarksFixture.h"
#include "ui/bookmarks/AddBookmarkSheet.h"
#include "ui/bookmarks/RenameCategorySheet.h"

namespace zelnor::ui {
namespace {

/// What ends a sheet, and whether that confirms it.
struct Ending {
  Qt::Key key;
  Qt::KeyboardModifiers modifiers;
  bool confirms;
};
const std::vector<Ending> kEndings{{Qt::Key_Escape, Qt::NoModifier, false},
                                   {Qt::Key_Escape, Qt::ControlModifier, false},
                                   {Qt::Key_Return, Qt::NoModifier, true},
                                   {Qt::Key_Return, Qt::ControlModifier, true}};

class BookmarkSheetsTest : public SidebarFixture {
 protected:
  void capture(const std::string& query, const SearchFilter& filter) {
    test::FakeSearchSource source;
    test::ManualClock clock;
    test::MemoryDefaultsStore defaults;
    SearchViewModel search({source, clock, defaults, main_.executor(), main_.executor()});
    search.setQueryText(query);
    search.setFilter(filter);
    bookmarks_.prepareNew(search);
    bool isStopped = false;
    search.stop([&] { isStopped = true; });
    main_.runUntil([&] { return isStopped; });
  }
  template <class Sheet>
  [[nodiscard]] std::ptrdiff_t sheets() const {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return panel_.findChildren<Sheet*>().size();
  }
  void ask() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    sidebar_->openAddSheet();
  }
  [[nodiscard]] QLineEdit& field() const { return *panel_.findChild<QLineEdit*>(); }
  [[nodiscard]] QComboBox& picker() const { return *panel_.findChild<QComboBox*>(); }
  [[nodiscard]] bool shows(QStringView text) const {
    for (const auto* label : panel_.findChildren<QLabel*>()) {
      if (label->text() == text) return true;
    }
    return false;
  }
};

TEST_F(BookmarkSheetsTest, SavesAnEmptySearchBeforeAnyCapture) {
  int asked = 0;
  QObject::connect(sidebar_, &BookmarksSidebarView::newRequested, [&] {
    ++asked;
    sidebar_->openAddSheet();
  });
  press(u"新建书签");
  EXPECT_EQ(asked, 1);
  sidebar_->openAddSheet();
  EXPECT_EQ(sheets<AddBookmarkSheet>(), 1);
  EXPECT_TRUE(field().hasFocus());
  EXPECT_TRUE(shows(u"（无关键词）"));
  press(u"保存");
  ASSERT_EQ(bookmarks_.bookmarks().size(), 1U);
  EXPECT_EQ(bookmarks_.bookmarks()[0].name, "新书签");
  EXPECT_EQ(bookmarks_.bookmarks()[0].query, "");
  EXPECT_EQ(bookmarks_.bookmarks()[0].filter, SearchFilter());
  EXPECT_EQ(sheets<AddBookmarkSheet>(), 0);
}

TEST_F(BookmarkSheetsTest, SavesTheCapturedSearchInTheChosenCategory) {
  const SearchFilter images{.category = FileTypeCategory::image};
  const auto work = addCategory("R&D");
  capture("invoice", images);
  ask();
  EXPECT_TRUE(shows(u"invoice"));
  EXPECT_EQ(picker().currentText(), QStringLiteral(u"未分类"));
  EXPECT_EQ(picker().itemText(1), QStringLiteral(u"R&D"));
  const auto labels =
      QAccessible::queryAccessibleInterface(&picker())->relations(QAccessible::Label);
  ASSERT_EQ(labels.size(), 1);
  EXPECT_EQ(labels[0].first->text(QAccessible::Name), QStringLiteral(u"分类"));
  picker().setCurrentIndex(1);
  press(u"保存");
  ask();
  EXPECT_EQ(field().text(), QString()) << "begins anew";
  EXPECT_EQ(picker().currentIndex(), 0);
  QTest::keyClicks(&field(), QStringLiteral(" typed "));
  press(u"保存");
  ASSERT_EQ(bookmarks_.bookmarks().size(), 2U);
  const auto& first = bookmarks_.bookmarks()[0];
  EXPECT_EQ(first.name, "invoice");
  EXPECT_EQ(first.query, "invoice");
  EXPECT_EQ(first.filter, images);
  EXPECT_EQ(first.categoryID, work);
  EXPECT_EQ(bookmarks_.bookmarks()[1].name, " typed ");
  EXPECT_EQ(bookmarks_.bookmarks()[1].categoryID, Uuid());
}

TEST_F(BookmarkSheetsTest, FollowsCategoriesThatChangeWhileItAsks) {
  const auto play = addCategory("play");
  const auto work = addCategory("work");
  ask();
  picker().setCurrentIndex(2);
  bookmarks_.deleteCategory(play);
  EXPECT_EQ(picker().currentText(), QStringLiteral("work"));
  bookmarks_.deleteCategory(work);
  EXPECT_EQ(picker().currentText(), QStringLiteral(u"未分类"));
  press(u"保存");
  EXPECT_EQ(bookmarks_.bookmarks()[0].categoryID, Uuid());
}

TEST_F(BookmarkSheetsTest, KeysEndTheSheetsWhereverTheKeyboardIs) {
  for (const auto& [key, modifiers, confirms] : kEndings) {
    const auto saved = bookmarks_.bookmarks().size();
    ask();
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    EXPECT_EQ(bookmarks_.bookmarks().size(), saved + (confirms ? 1 : 0));
    EXPECT_EQ(sheets<AddBookmarkSheet>(), 0);

    ask();
    picker().setFocus();
    QTest::keyClick(&picker(), key, modifiers);
    EXPECT_EQ(sheets<AddBookmarkSheet>(), 0);

    std::optional<std::string> name;
    auto* sheet = new RenameCategorySheet("", [&](const auto& typed) { name = typed; }, panel_);
    sheet->open();
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    EXPECT_EQ(name, confirms ? std::optional<std::string>("") : std::nullopt);
    EXPECT_EQ(sheets<RenameCategorySheet>(), 0);
  }
  ask();
  const auto saved = bookmarks_.bookmarks().size();
  QTest::keyClick(&field(), Qt::Key_Backtab, Qt::ShiftModifier);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
  ASSERT_EQ(QApplication::focusWidget()->accessibleName(), QStringLiteral(u"取消"));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(bookmarks_.bookmarks().size(), saved + 1) << "Ctrl and Return are the sheet's";
}

TEST_F(BookmarkSheetsTest, RenamesOnlyTheCategoryThatWasMeant) {
  addCategory("play");
  const auto work = addCategory("work");
  openMenu("work", QContextMenuEvent::Keyboard);
  pick(u"重命名");
  EXPECT_EQ(field().selectedText(), QStringLiteral("work"));
  bookmarks_.deleteCategory(bookmarks_.categories()[1].id);
  QTest::keyClicks(&field(), QStringLiteral(" new"));
  press(u"确定");
  EXPECT_EQ(bookmarks_.categories()[1].id, work);
  EXPECT_EQ(bookmarks_.categories()[1].name, " new");
  openMenu(" new", QContextMenuEvent::Mouse);
  pick(u"重命名");
  QTest::keyClicks(&field(), QStringLiteral("x"));
  press(u"取消");
  EXPECT_EQ(bookmarks_.categories()[1].name, " new");
}

}  // namespace
}  // namespace zelnor::ui
