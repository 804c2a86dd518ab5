#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QInputMethodEvent>
#include <QLabel>
#include <QRadioButton>
#include <QScrollBar>

#include "tests/ui/panel/PanelFixture.h"
#include "ui/Alert.h"
#include "ui/bookmarks/AddBookmarkSheet.h"
#include "ui/bookmarks/BookmarksSidebarView.h"
#include "ui/list/ResultRows.h"
#include "ui/panel/EmptyStateView.h"
#include "ui/panel/FilterPanelView.h"
#include "ui/panel/NoResultsView.h"
#include "ui/panel/ProgressSheet.h"
#include "ui/panel/StatusBarView.h"

namespace zelnor::ui {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SearchViewTest : public PanelFixture {
 protected:
  [[nodiscard]] QStringList texts(const QWidget& within) const {
    QStringList texts;
    for (const auto* label : within.findChildren<QLabel*>()) {
      if (label->isVisible() && !label->text().isEmpty()) texts << label->text();
    }
    return texts;
  }
  /// The sheet of this kind that is open.
  template <class Sheet>
  [[nodiscard]] Sheet* open() const {
    for (auto* sheet : view_->findChildren<Sheet*>()) {
      if (sheet->isVisible()) return sheet;
    }
    return nullptr;
  }
  [[nodiscard]] QString status() const { return texts(*find<StatusBarView>()).join(u'|'); }

  ResultRows* rows_ = find<ResultRows>();
  EmptyStateView* empty_ = find<EmptyStateView>();
  NoResultsView* noResults_ = find<NoResultsView>();
};

TEST_F(SearchViewTest, ShowsThePageThatFitsTheSearch) {
  EXPECT_TRUE(empty_->isVisible());
  source_.isHeld = true;
  QTest::keyClicks(field_, QStringLiteral("<i>"));
  EXPECT_FALSE(noResults_->isVisible());  // nobody knows yet
  waitForSearch();
  EXPECT_TRUE(rows_->isVisible());
  while (source_.waiting() > 0) {
    source_.release();
    settle();
  }
  EXPECT_TRUE(noResults_->isVisible());
  EXPECT_TRUE(texts(*noResults_).contains(QStringLiteral(u"没有包含「<i>」的文件")));
  source_.isHeld = false;
  source_.matches = 7;
  type(QStringLiteral("x"));
  EXPECT_TRUE(rows_->isVisible());
  click(u"清除");
  EXPECT_TRUE(empty_->isVisible());
  EXPECT_TRUE(field_->hasFocus());
  click(u"图片");  // a filter alone is a search, too, but finds nothing
  waitForSearch();
  EXPECT_TRUE(noResults_->isVisible());
  EXPECT_EQ(model_.filter().category, FileTypeCategory::image);
}

TEST_F(SearchViewTest, GoesFromFieldToListAndBackByKeyboard) {
  source_.matches = 20;
  type(QStringLiteral("rep"));
  press(Qt::Key_Down);
  ASSERT_TRUE(rows_->hasFocus());
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  settle();
  EXPECT_THAT(desktop_.log, ElementsAre("open /folder/name1"));
  press(Qt::Key_Up);
  press(Qt::Key_Up);
  EXPECT_TRUE(field_->hasFocus());
  press(Qt::Key_Down);
  QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("o"));  // goes on typing
  EXPECT_EQ(model_.queryText(), "repo");
  EXPECT_TRUE(field_->hasFocus());
}

TEST_F(SearchViewTest, ReturnInTheFieldOpensWhatWasTypedFor) {
  source_.matches = 20;
  type(QStringLiteral("rep"));
  press(Qt::Key_Return);
  settle();
  model_.setSelectedIDs({4});
  press(Qt::Key_Return);
  settle();
  EXPECT_THAT(desktop_.log, ElementsAre("open /folder/name0", "open /folder/name4"));

  desktop_.log.clear();
  source_.firstRow = 7;
  model_.setSelectedIDs({});
  QTest::keyClicks(field_, QStringLiteral("o"));  // the answer to it is not there yet
  press(Qt::Key_Return);
  EXPECT_THAT(desktop_.log, IsEmpty());
  settle();
  EXPECT_THAT(desktop_.log, ElementsAre("open /folder/name7"));
}

TEST_F(SearchViewTest, WhatAnInputMethodHoldsIsNotSearchedFor) {
  source_.matches = 3;
  QInputMethodEvent composing(QStringLiteral("bao gao"), {});
  QApplication::sendEvent(field_, &composing);
  waitForSearch();
  EXPECT_THAT(source_.searches, IsEmpty());
  EXPECT_TRUE(empty_->isVisible());
  int closed = 0;
  QObject::connect(view_.get(), &SearchView::closeRequested, [&] { ++closed; });
  for (const auto key : {Qt::Key_Return, Qt::Key_Down, Qt::Key_Escape}) press(key);
  EXPECT_EQ(closed, 0);
  EXPECT_TRUE(field_->hasFocus());
  QInputMethodEvent chosen;
  chosen.setCommitString(QStringLiteral(u"报告"));
  QApplication::sendEvent(field_, &chosen);
  waitForSearch();
  ASSERT_EQ(source_.searches.size(), 1U);
  EXPECT_EQ(source_.searches.front().query.text, "报告");
  press(Qt::Key_Down);
  EXPECT_TRUE(rows_->hasFocus());
}

TEST_F(SearchViewTest, WhatIsComposedInTheListIsComposedInTheField) {
  source_.matches = 3;
  type(QStringLiteral("a"));
  press(Qt::Key_Down);
  ASSERT_TRUE(rows_->hasFocus());
  QInputMethodQueryEvent query(Qt::ImEnabled | Qt::ImCursorRectangle);
  QApplication::sendEvent(rows_, &query);
  EXPECT_TRUE(query.value(Qt::ImEnabled).toBool());
  const auto caret = query.value(Qt::ImCursorRectangle).toRect().center();
  EXPECT_TRUE(
      field_->rect().contains(field_->mapFrom(view_.get(), rows_->mapTo(view_.get(), caret))));

  QInputMethodEvent composing(QStringLiteral("bao"), {});
  QApplication::sendEvent(rows_, &composing);
  EXPECT_TRUE(rows_->hasFocus());
  EXPECT_EQ(model_.queryText(), "a");
  QInputMethodEvent chosen;
  chosen.setCommitString(QStringLiteral(u"报"));
  QApplication::sendEvent(rows_, &chosen);
  EXPECT_EQ(model_.queryText(), "a报");
  EXPECT_TRUE(field_->hasFocus());
}

TEST_F(SearchViewTest, EscapeForgetsThePreviewThenCloses) {
  int closed = 0;
  std::vector<std::string> previewed;
  QObject::connect(view_.get(), &SearchView::closeRequested, [&] { ++closed; });
  QObject::connect(view_.get(), &SearchView::previewRequested,
                   [&](const std::string& path) { previewed.push_back(path); });
  source_.matches = 5;
  type(QStringLiteral("a b"));
  EXPECT_EQ(model_.queryText(), "a b");
  EXPECT_THAT(previewed, IsEmpty());
  rows_->setFocus();
  press(Qt::Key_Space);  // nothing is selected: takes the first
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(0));
  press(Qt::Key_Escape);
  EXPECT_EQ(closed, 1);
  press(Qt::Key_Space);
  EXPECT_THAT(previewed, ElementsAre("/folder/name0", "/folder/name0"));
  press(Qt::Key_Escape);
  EXPECT_EQ(closed, 1);
  press(Qt::Key_Escape);
  EXPECT_EQ(closed, 2);
}

TEST_F(SearchViewTest, OffersRecentSearchesAndBookmarks) {
  for (const auto* text : {"a & <b>", "second"}) {
    search(text);
    model_.setQueryText("");
  }
  SearchFilter large;
  large.sizePreset = SizePreset::large;
  for (const auto* name : {"1", "2", "3", "4", "5 & 6", "7"}) {
    bookmarks_.addBookmark(name, "query", large, {});
  }
  settle();
  EXPECT_NE(button(u"4"), nullptr);
  EXPECT_EQ(button(u"7"), nullptr);  // one too many
  field_->setFocus();
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_EQ(field_->text(), QStringLiteral("a & <b>"));
  EXPECT_TRUE(field_->hasFocus());
  click(u"清除");
  view_->setShowsBookmarks(true);
  click(u"5 & 6");
  EXPECT_EQ(field_->text(), QStringLiteral("query"));
  EXPECT_EQ(model_.filter(), large);
  EXPECT_FALSE(view_->showsBookmarks());
  EXPECT_NE(button(u"筛选 (1) ▾"), nullptr);
}

TEST_F(SearchViewTest, FiltersAreChosenCountedAndReset) {
  type(QStringLiteral("foo"));
  EXPECT_EQ(button(u"今天"), nullptr);
  click(u"筛选 ▾");
  click(u"今天");
  EXPECT_NE(button(u"筛选 (1) ▾"), nullptr);
  click(u"1MB ~ 10MB");
  EXPECT_NE(button(u"筛选 (2) ▾"), nullptr);
  EXPECT_EQ(model_.filter().datePreset, DatePreset::today);
  EXPECT_EQ(model_.filter().sizePreset, SizePreset::medium);
  auto filter = model_.filter();
  filter.datePreset = DatePreset::custom;
  model_.setFilter(filter);
  EXPECT_FALSE(button(u"今天")->isChecked());
  EXPECT_FALSE(button(u"不限时间")->isChecked());
  click(u"清除筛选");
  EXPECT_EQ(model_.filter(), SearchFilter::empty);
  EXPECT_EQ(model_.queryText(), "foo");
  EXPECT_TRUE(button(u"不限时间")->isChecked());
  EXPECT_EQ(button(u"清除筛选"), nullptr);

  click(u"通配符 (* ?)");
  EXPECT_EQ(field_->text(), QStringLiteral("*foo*"));
  QTest::keyClicks(field_, QStringLiteral("\b"));
  field_->setText(QString());
  QTest::keyClicks(field_, QStringLiteral("r:"));
  EXPECT_TRUE(button(u"正则表达式")->isChecked());
}

TEST_F(SearchViewTest, FiltersAndBookmarksHaveRoomBesideEachOther) {
  const auto* filters = find<FilterPanelView>();
  view_->setShowsFilters(true);
  view_->setShowsBookmarks(true);
  settle();
  EXPECT_EQ(filters->verticalScrollBar()->maximum(), 0);
  view_->resize(SearchView::kSmallest);
  settle();
  const auto* add = button(u"新建书签");
  const auto* category = button(u"新建分类");
  EXPECT_GE(add->parentWidget()->height(), add->height());
  EXPECT_GE(category->height(), category->sizeHint().height());
  EXPECT_LE(category->mapTo(view_.get(), category->rect().bottomLeft()).y(), view_->height());
}

TEST_F(SearchViewTest, SavesTheSearchAsABookmark) {
  press(Qt::Key_D, Qt::ControlModifier);  // nothing to save yet
  ASSERT_NE(open<AddBookmarkSheet>(), nullptr);
  press(Qt::Key_Escape);
  EXPECT_EQ(open<AddBookmarkSheet>(), nullptr);
  type(QStringLiteral("invoice"));
  press(Qt::Key_D, Qt::ControlModifier);
  press(Qt::Key_Return, Qt::ControlModifier);
  settle();
  ASSERT_EQ(bookmarks_.bookmarks().size(), 1U);
  EXPECT_EQ(bookmarks_.bookmarks().front().name, "invoice");
  EXPECT_TRUE(field_->hasFocus());
}

TEST_F(SearchViewTest, TrashesWhatWasConfirmedAndTellsWhatFailed) {
  source_.matches = 5;
  type(QStringLiteral("name"));
  rows_->setFocus();
  model_.setSelectedIDs({1, 3});
  press(Qt::Key_Backspace);
  ASSERT_NE(open<Alert>(), nullptr);
  press(Qt::Key_Escape);
  settle();
  EXPECT_THAT(desktop_.log, IsEmpty());
  desktop_.refusal = "<b>权限不够</b>";
  press(Qt::Key_Delete);
  click(u"移到废纸篓");
  settle();
  ASSERT_NE(open<Alert>(), nullptr);
  EXPECT_THAT(desktop_.log, ElementsAre("trash /folder/name1"));
  EXPECT_TRUE(texts(*open<Alert>()).contains(QStringLiteral("<b>权限不够</b>")));
  press(Qt::Key_Return);
  settle();
  EXPECT_EQ(model_.results().size(), 5U);
  press(Qt::Key_Return);
  settle();
  EXPECT_THAT(desktop_.log, ElementsAre("trash /folder/name1", "trash /folder/name3"));
  EXPECT_EQ(model_.results().size(), 3U);
  EXPECT_TRUE(rows_->hasFocus());
}

TEST_F(SearchViewTest, ShowsALongWayToTheTrashAndEndsItBetweenFiles) {
  source_.matches = 9;
  type(QStringLiteral("name"));
  bool isShown = false;
  desktop_.meanwhile = [&] {
    if (desktop_.log.size() == 2) clock_.advance(FileOperationService::kLong);
    if (desktop_.log.size() == 6) {
      isShown = open<ProgressSheet>() != nullptr;
      click(u"取消");
    }
  };
  files_.moveToTrash(model_.results());
  settle();
  EXPECT_TRUE(isShown);
  EXPECT_EQ(open<ProgressSheet>(), nullptr);
  EXPECT_EQ(desktop_.log.size(), 6U);
  EXPECT_EQ(model_.results().size(), 3U);
}

TEST_F(SearchViewTest, TellsWhatGoesOn) {
  source_.matches = 7;
  source_.isIncomplete = true;
  type(QStringLiteral("r:name"));
  EXPECT_EQ(status(), QStringLiteral(u"至少 7 个结果"));
  source_.isIncomplete = false;
  type(QStringLiteral("\\d"));
  EXPECT_EQ(status(), QStringLiteral(u"共找到 7 个结果"));
  EXPECT_NE(button(u"排序：匹配度 ↑"), nullptr);
  model_.updateSort(SortField::date);
  settle();
  EXPECT_NE(button(u"排序：修改日期 ↑"), nullptr);
  view_->setFailure(QStringLiteral(u"坏了"));
  EXPECT_EQ(status(), QStringLiteral(u"坏了"));
}

TEST_F(SearchViewTest, CanBeUsedByKeyboardAndReadAloud) {
  source_.matches = 5;
  type(QStringLiteral("name"));
  view_->setShowsFilters(true);
  view_->setShowsBookmarks(true);
  std::set<const QWidget*> visited;
  constexpr int kMoreThanThereAre = 60;
  for (int i = 0; i < kMoreThanThereAre; ++i) {
    visited.insert(QApplication::focusWidget());
    press(Qt::Key_Tab);
  }
  EXPECT_TRUE(visited.contains(field_));
  EXPECT_TRUE(visited.contains(rows_));
  for (const auto* control : view_->findChildren<QAbstractButton*>()) {
    if (!control->isVisible()) continue;
    auto* spoken = QAccessible::queryAccessibleInterface(const_cast<QAbstractButton*>(control));
    const auto name = spoken->text(QAccessible::Name).toStdString();
    EXPECT_NE(name, "");
    const bool isChoice = qobject_cast<const QRadioButton*>(control) != nullptr;
    EXPECT_EQ(spoken->role(), isChoice ? QAccessible::RadioButton : QAccessible::PushButton);
    // Arrow keys go from choice to choice.
    if (!isChoice || control->isChecked()) {
      EXPECT_TRUE(visited.contains(control)) << name;
    }
  }
  press(Qt::Key_D, Qt::ControlModifier);
  auto* sheet = QAccessible::queryAccessibleInterface(open<AddBookmarkSheet>());
  EXPECT_EQ(sheet->role(), QAccessible::Dialog);
  EXPECT_TRUE(sheet->state().modal);
  EXPECT_EQ(sheet->text(QAccessible::Name), QStringLiteral(u"保存书签"));
  for (int i = 0; i < kMoreThanThereAre; ++i) {
    press(Qt::Key_Tab);
    ASSERT_TRUE(open<AddBookmarkSheet>()->isAncestorOf(QApplication::focusWidget()));
  }
}

}  // namespace
}  // namespace zelnor::ui
