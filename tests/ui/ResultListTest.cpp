#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QScrollBar>
#include <QTest>

#include "tests/ui/SearchFixture.h"
#include "ui/list/ResultListModel.h"
#include "ui/list/ResultListView.h"
#include "ui/list/ResultRowGeometry.h"

namespace zelnor::ui {
namespace {

using testing::ElementsAre;

class ResultListTest : public SearchFixture {
 protected:
  /// Shows no scroll bar: Qt fills it on threads of its own, which wait for each other in a way
  /// that the thread sanitizer takes for none.
  static void show(ResultListView& view) {
    view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view.resize(600, 400);
    view.show();
  }

  void refresh() {
    model_.indexChanged();
    settle();
    clock_.advance(SearchViewModel::kRefreshPause);
    settle();
  }
};

TEST_F(ResultListTest, FollowsTheViewModelByTheRulesOfItemModels) {
  ResultListModel list(model_);
  const QAbstractItemModelTester tester(&list,
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  source_.matches = 450;
  search("report");
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
  source_.matches = 1000;
  ResultListView view(model_);
  show(view);
  search("report");
  EXPECT_EQ(source_.searches.size(), 1U);  // the end is far away
  while (model_.hasMore()) {
    const auto loaded = model_.results().size();
    view.scrollToBottom();
    settle();
    ASSERT_GT(model_.results().size(), loaded);
  }
  EXPECT_EQ(view.model()->rowCount(), 1000);
}

TEST_F(ResultListTest, SharesTheSelectionAndKeepsItThroughOtherResults) {
  source_.matches = 300;
  ResultListView view(model_);
  show(view);
  search("report");
  view.enter();
  QTest::keyClick(&view, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(0, 1));

  source_.matches = 1;
  search("invoice");
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(0, 1));
  EXPECT_EQ(view.selectionModel()->selectedRows().size(), 1);
  source_.matches = 300;
  search("report");
  EXPECT_EQ(view.selectionModel()->selectedRows().size(), 2);
  model_.removeResults({0});
  EXPECT_EQ(view.selectionModel()->selectedRows().front().data().toString(),
            QStringLiteral("name1"));
}

TEST_F(ResultListTest, StaysWhereTheUserIsWhenTheIndexChanges) {
  source_.matches = 450;
  ResultListView view(model_);
  show(view);
  search("report");
  view.enter();
  for (int i = 0; i < 30; ++i) QTest::keyClick(&view, Qt::Key_Down);
  const auto scrolled = view.verticalScrollBar()->value();
  ASSERT_GT(scrolled, 0);

  source_.firstRow = 3;  // three files above have gone, and the list is shorter
  source_.matches = 100;
  refresh();
  EXPECT_EQ(view.model()->rowCount(), 100);
  EXPECT_EQ(view.verticalScrollBar()->value(), scrolled);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(30));
  EXPECT_EQ(view.currentIndex().data().toString(), QStringLiteral("name30"));
  EXPECT_EQ(view.selectionModel()->selectedRows().size(), 1);

  source_.firstRow = 5;
  source_.folder = "/moved/";
  refresh();
  EXPECT_EQ(view.currentIndex().data().toString(), QStringLiteral("name30"));
  EXPECT_EQ(view.currentIndex().data(ResultListModel::folderRole).toString(),
            QStringLiteral("/moved"));

  view.selectAll();
  source_.folder = "/again/";
  refresh();
  EXPECT_EQ(model_.selectedIDs().size(), 100U);
  EXPECT_EQ(view.selectionModel()->selectedRows().size(), 100);
  EXPECT_EQ(view.selectionModel()->selection().size(), 1);  // one by one they would take seconds
}

TEST(ResultRowGeometry, KeepsItsPartsApartAtAnyWidth) {
  for (const int width : {900, 480, 200}) {
    const QRect row(0, 96, width, ResultRowGeometry::kHeight);
    const auto parts = ResultRowGeometry::of(row);
    EXPECT_TRUE(row.contains(parts.date));
    EXPECT_FALSE(parts.name.intersects(parts.folder));
    for (const auto& text : {parts.name, parts.folder}) {
      EXPECT_GT(text.left(), parts.icon.right());
      EXPECT_TRUE(text.isEmpty() || text.right() < parts.size.left());
    }
  }
}

}  // namespace
}  // namespace zelnor::ui
