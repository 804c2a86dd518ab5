#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "tests/ui/list/ListFixture.h"
#include "ui/DisplayText.h"
#include "ui/list/LoadingStrip.h"
#include "ui/list/ResultListModel.h"

namespace zelnor::ui {
namespace {

using testing::ElementsAre;

using ResultListTest = ListFixture;

TEST_F(ResultListTest, FollowsTheViewModelByTheRulesOfItemModels) {
  ResultListModel list(model_);
  const QAbstractItemModelTester tester(&list,
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  showMatches(450);
  EXPECT_EQ(list.rowCount(), 200);
  model_.loadMore();
  settle();
  EXPECT_EQ(list.rowCount(), 400);
  model_.removeResults({0, 7});
  EXPECT_EQ(list.rowCount(), 398);
  EXPECT_EQ(list.index(0).data().toString(), QStringLiteral("name1"));
  EXPECT_EQ(list.index(0).data(ResultListModel::folderRole).toString(), QStringLiteral("/folder"));
  model_.setQueryText("");
  EXPECT_EQ(list.rowCount(), 0);
}

TEST_F(ResultListTest, LoadsAllPagesOfALongListAsItIsScrolled) {
  showMatches(1000);
  EXPECT_EQ(source_.searches.size(), 1U);  // the end is far away
  while (model_.hasMore()) {
    const auto loaded = model_.results().size();
    rows_.scrollToBottom();
    settle();
    ASSERT_GT(model_.results().size(), loaded);
  }
  EXPECT_EQ(rows_.model()->rowCount(), 1000);
}

TEST_F(ResultListTest, SharesTheSelectionAndKeepsItThroughOtherResults) {
  showMatches(300);
  view_.enter();
  press(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(0, 1));

  source_.matches = 1;
  search("invoice");
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(0, 1));
  EXPECT_EQ(selectedRows().size(), 1);
  showMatches(300);
  EXPECT_EQ(selectedRows().size(), 2);
  model_.removeResults({0});
  EXPECT_EQ(selectedRows().front().data().toString(), QStringLiteral("name1"));
}

TEST_F(ResultListTest, StaysWhereTheUserIsWhenTheIndexChanges) {
  showMatches(450);
  view_.enter();
  for (int i = 0; i < 30; ++i) press(Qt::Key_Down);
  const auto scrolled = rows_.verticalScrollBar()->value();
  ASSERT_GT(scrolled, 0);

  source_.firstRow = 3;  // three files above have gone, and the list is shorter
  source_.matches = 100;
  refresh();
  EXPECT_EQ(rows_.model()->rowCount(), 100);
  EXPECT_EQ(rows_.verticalScrollBar()->value(), scrolled);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(30));
  EXPECT_EQ(rows_.currentIndex().data().toString(), QStringLiteral("name30"));
  EXPECT_EQ(selectedRows().size(), 1);

  source_.firstRow = 5;
  source_.folder = "/moved/";
  refresh();
  EXPECT_EQ(rows_.currentIndex().data().toString(), QStringLiteral("name30"));
  EXPECT_EQ(rows_.currentIndex().data(ResultListModel::folderRole).toString(),
            QStringLiteral("/moved"));

  rows_.selectAll();
  source_.folder = "/again/";
  refresh();
  EXPECT_EQ(model_.selectedIDs().size(), 100U);
  EXPECT_EQ(selectedRows().size(), 100);
  EXPECT_EQ(rows_.selectionModel()->selection().size(), 1);  // one by one they would take seconds
}

TEST_F(ResultListTest, StaysWhereTheUserIsWhenRowsAreTakenAway) {
  showMatches(200);
  view_.enter();
  for (int i = 0; i < 30; ++i) press(Qt::Key_Down);
  const auto scrolled = rows_.verticalScrollBar()->value();
  model_.removeResults({3});
  settle();
  EXPECT_EQ(rows_.currentIndex().data().toString(), QStringLiteral("name30"));
  EXPECT_EQ(selectedRows().size(), 1);
  model_.removeResults({30});
  settle();
  EXPECT_EQ(rows_.verticalScrollBar()->value(), scrolled);
  EXPECT_THAT(selectedRows(), testing::IsEmpty());
  press(Qt::Key_Down);  // from what has taken its place
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(32));

  search("invoice");
  EXPECT_EQ(rows_.verticalScrollBar()->value(), 0);
  EXPECT_FALSE(rows_.currentIndex().isValid());
}

TEST_F(ResultListTest, ShowsAtItsEndThatMoreIsOnItsWay) {
  const auto* strip = view_.findChild<LoadingStrip*>();
  showMatches(1000);
  source_.isHeld = true;
  model_.loadMore();
  settle();
  EXPECT_FALSE(strip->isVisible());  // the end is not to be seen
  rows_.scrollToBottom();
  settle();
  EXPECT_TRUE(strip->isVisible());
  EXPECT_EQ(strip->geometry().bottom(), rows_.viewport()->rect().bottom());
  EXPECT_EQ(strip->height(), 14 + 2 * 10);
  source_.release();
  settle();
  EXPECT_FALSE(strip->isVisible());
}

TEST_F(ResultListTest, SortsByItsTitlesAndSaysHow) {
  QObject::connect(&view_, &ResultListView::sortChosen, &model_, &SearchViewModel::updateSort);
  showMatches(3);
  const auto cell = [this](const QString& title) {
    const auto cells = view_.findChildren<QPushButton*>();
    return *std::ranges::find(cells, title, &QPushButton::accessibleName);
  };
  const auto direction = [&](const QString& title) { return cell(title)->accessibleDescription(); };
  const std::vector<std::pair<QString, SortField>> titles{
      {QStringLiteral(u"名称"), SortField::name},
      {QStringLiteral(u"路径"), SortField::path},
      {QStringLiteral(u"大小"), SortField::size},
      {QStringLiteral(u"修改日期"), SortField::date}};
  for (const auto& [title, field] : titles) {
    EXPECT_EQ(direction(title), QString());
    const auto plain = cell(title)->grab().toImage();
    QTest::mouseClick(cell(title), Qt::LeftButton);
    settle();
    EXPECT_EQ(model_.sortBy(), field);
    EXPECT_EQ(direction(title), QStringLiteral(u"升序"));
    const auto ascending = cell(title)->grab().toImage();
    EXPECT_NE(ascending, plain);
    QTest::mouseClick(cell(title), Qt::LeftButton);
    settle();
    EXPECT_EQ(direction(title), QStringLiteral(u"降序"));
    EXPECT_NE(cell(title)->grab().toImage(), ascending);
  }
  EXPECT_EQ(direction(titles.front().first), QString());
}

TEST_F(ResultListTest, TellsAScreenReaderWhatItShows) {
  showMatches(2);
  auto* list = QAccessible::queryAccessibleInterface(&rows_);
  EXPECT_EQ(list->text(QAccessible::Name), QStringLiteral(u"搜索结果"));
  ASSERT_EQ(list->childCount(), 2);
  const auto expected = QStringLiteral(u"name1，/folder，0 字节，") + dateText(0);
  EXPECT_EQ(list->child(1)->text(QAccessible::Name), expected);
  // What it selects is selected.
  list->tableInterface()->selectRow(1);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(1));
}

}  // namespace
}  // namespace zelnor::ui
