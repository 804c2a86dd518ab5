#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>

#include "tests/ui/list/ListFixture.h"
#include "ui/list/RowDrag.h"

namespace zelnor::ui {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const auto kUriList = QStringLiteral("text/uri-list");

using ResultListInputTest = ListFixture;

TEST_F(ResultListInputTest, SelectsByMouse) {
  showMatches(20);
  click(1);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(1));
  click(3, Qt::ShiftModifier);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(1, 2, 3));
  click(2, Qt::ControlModifier);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(1, 3));
  EXPECT_EQ(selectedRows().size(), 2);
  QTest::mouseClick(rows_.viewport(), Qt::RightButton, Qt::NoModifier, place(5));
  QTest::mouseClick(rows_.viewport(), Qt::MiddleButton, Qt::NoModifier, place(5));
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(1, 3));

  // Pressed, one of several may be about to be dragged with the others.
  QTest::mousePress(rows_.viewport(), Qt::LeftButton, Qt::NoModifier, place(3));
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(1, 3));
  QTest::mouseRelease(rows_.viewport(), Qt::LeftButton, Qt::NoModifier, place(3));
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(3));
  EXPECT_EQ(asked(), "");
}

TEST_F(ResultListInputTest, LeavesAClickedRowUnderThePointer) {
  showMatches(20);
  const auto lastInView = rows_.indexAt(QPoint(5, rows_.viewport()->height() - 1)).row();
  click(lastInView);
  EXPECT_EQ(rows_.verticalScrollBar()->value(), 0);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(lastInView));
}

TEST_F(ResultListInputTest, OpensADoubleClickedRowUnlessAnotherHasTakenItsPlace) {
  showMatches(20);
  const auto doubleClick = [this](int row) {
    click(row);
    QTest::mouseDClick(rows_.viewport(), Qt::LeftButton, Qt::NoModifier, place(row));
  };
  doubleClick(2);
  EXPECT_EQ(asked(), "open name2;");
  click(2);
  source_.firstRow = 1;
  refresh();
  QMouseEvent second(QEvent::MouseButtonDblClick, place(2), rows_.viewport()->mapToGlobal(place(2)),
                     Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(rows_.viewport(), &second);
  EXPECT_EQ(asked(), "");
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(3));
}

TEST_F(ResultListInputTest, SelectsByKeyboard) {
  showMatches(100);
  view_.enter();
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(0));
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(2));
  press(Qt::Key_Down, Qt::ShiftModifier);
  press(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(2, 3, 4));
  for (int i = 0; i < 3; ++i) press(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(1, 2));
  press(Qt::Key_End);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(99));
  EXPECT_TRUE(rows_.viewport()->rect().contains(place(99)));
  press(Qt::Key_PageUp);
  EXPECT_LT(*model_.selectedIDs().begin(), 95);
  press(Qt::Key_Home);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(0));
  press(Qt::Key_Down, Qt::ControlModifier);
  press(Qt::Key_Down, Qt::ControlModifier);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(0));
  press(Qt::Key_Space, Qt::ControlModifier);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(0, 2));
  press(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(model_.selectedIDs().size(), 100U);

  // Mouse and keyboard go on where the other was.
  click(3);
  press(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(3, 4));
  click(1, Qt::ShiftModifier);
  press(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(2, 3));
  EXPECT_EQ(asked(), "");
}

TEST_F(ResultListInputTest, ActsOnWhatIsSelected) {
  showMatches(20);
  rows_.setFocus();
  const auto pressAll = [this] {
    for (const auto key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) press(key);
    press(Qt::Key_C, Qt::ControlModifier);
    return asked();
  };
  EXPECT_EQ(pressAll(), "");
  click(4);
  click(2, Qt::ControlModifier);
  EXPECT_EQ(pressAll(), "preview name2;open name2;open name2;copy name2,name4,;");
  press(Qt::Key_Down, Qt::ControlModifier);  // to what is not selected
  EXPECT_EQ(pressAll(), "preview name2;open name2;open name2;copy name2,name4,;");
  model_.setSelectedIDs({77});  // selected in another list
  EXPECT_EQ(pressAll(), "");

  model_.setSelectedIDs({2});
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), /*autorep=*/true);
  QApplication::sendEvent(&rows_, &held);
  EXPECT_EQ(asked(), "");
}

TEST_F(ResultListInputTest, OpensForTheSearchFieldWhatIsSelectedOrFirst) {
  view_.openSelectedOrFirst();
  EXPECT_EQ(asked(), "");
  showMatches(5);
  view_.openSelectedOrFirst();
  EXPECT_EQ(asked(), "open name0;");
  model_.setSelectedIDs({3, 4});
  view_.openSelectedOrFirst();
  EXPECT_EQ(asked(), "open name3;");
}

TEST_F(ResultListInputTest, GivesBackWhatIsMeantForTheSearchField) {
  showMatches(3);
  view_.enter();
  press(Qt::Key_A);
  QTest::sendKeyEvent(QTest::Click, &rows_, Qt::Key_unknown, QStringLiteral(u"报"), Qt::NoModifier);
  press(Qt::Key_A, Qt::AltModifier);
  EXPECT_EQ(asked(), "typed a;typed 报;");
  press(Qt::Key_Up);
  EXPECT_EQ(asked(), "up;");
  press(Qt::Key_Down);
  press(Qt::Key_Up);
  EXPECT_EQ(asked(), "");
}

TEST_F(ResultListInputTest, DragsAllThatIsSelected) {
  showMatches(20);
  const auto dragged = [this](int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mousePress(rows_.viewport(), Qt::LeftButton, modifiers, place(row));
    QMouseEvent move(QEvent::MouseMove, place(row) + QPoint(0, 60), QCursor::pos(), Qt::NoButton,
                     Qt::LeftButton, modifiers);
    QApplication::sendEvent(rows_.viewport(), &move);
    QApplication::sendEvent(rows_.viewport(), &move);  // once is enough
    QTest::mouseRelease(rows_.viewport(), Qt::LeftButton, modifiers, place(row));
    const auto drags = rows_.findChildren<QDrag*>();
    const auto files = drags.size() == 1 ? drags.front()->mimeData()->data(kUriList) : QByteArray();
    qDeleteAll(drags);
    return files.toStdString();
  };
  click(2);
  click(4, Qt::ControlModifier);
  EXPECT_EQ(dragged(4), "file:///folder/name2\r\nfile:///folder/name4\r\n");
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(2, 4));
  EXPECT_EQ(dragged(3), "file:///folder/name3\r\n");
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(3));
  EXPECT_EQ(dragged(3, Qt::ControlModifier), "");  // is not selected any more
}

TEST_F(ResultListInputTest, DragsFilesByTheirBytes) {
  std::vector<SearchResult> files{test::FakeSearchSource::row(1, "/a b/"),
                                  test::FakeSearchSource::row(2, "/\xFF\n%/")};
  const auto data = filesToDrop(files);
  EXPECT_EQ(data->formats(), QStringList{kUriList});
  EXPECT_EQ(data->data(kUriList).toStdString(),
            "file:///a%20b/name1\r\nfile:///%FF%0A%25/name2\r\n");

  QPixmap icon(28, 28);
  icon.fill(Qt::red);
  EXPECT_EQ(dragPicture(icon, 1).toImage(), icon.toImage());
  EXPECT_GT(dragPicture(icon, 2).width(), icon.width());
  EXPECT_GT(dragPicture(icon, 50'000).width(), dragPicture(icon, 2).width());
}

}  // namespace
}  // namespace zelnor::ui
