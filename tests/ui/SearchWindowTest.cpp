#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>

#include "tests/ui/SearchFixture.h"
#include "ui/panel/NoResultsPage.h"
#include "ui/list/ResultListView.h"
#include "ui/panel/SearchWindow.h"
#include "ui/panel/StartPage.h"
#include "ui/panel/StatusLine.h"

namespace zelnor::ui {
namespace {

class SearchWindowTest : public SearchFixture {
 protected:
  SearchWindowTest() {
    window_.show();
    window_.activateWindow();
    settle();
  }
  void type(const QString& text) {
    QTest::keyClicks(field_, text);
    waitForSearch();
  }
  static void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

  SearchWindow window_{model_};
  QLineEdit* field_ = window_.findChild<QLineEdit*>();
  ResultListView* list_ = window_.findChild<ResultListView*>();
  StartPage* start_ = window_.findChild<StartPage*>();
  NoResultsPage* noResults_ = window_.findChild<NoResultsPage*>();
};

TEST_F(SearchWindowTest, GoesFromFieldToListAndBackByKeyboard) {
  std::string opened;
  QObject::connect(&window_, &SearchWindow::openRequested,
                   [&](const std::string& path) { opened = path; });
  source_.matches = 20;
  type(QStringLiteral("rep"));
  ASSERT_TRUE(list_->isVisible());
  press(Qt::Key_Down);
  ASSERT_TRUE(list_->hasFocus());
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_EQ(opened, "/folder/name1");
  press(Qt::Key_Up);
  press(Qt::Key_Up);
  EXPECT_TRUE(field_->hasFocus());
  press(Qt::Key_Down);
  QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("o"));  // goes on typing
  EXPECT_EQ(model_.queryText(), "repo");
  press(Qt::Key_Escape);
  EXPECT_EQ(model_.queryText(), "");
  EXPECT_TRUE(field_->hasFocus());
  EXPECT_TRUE(start_->isVisible());
}

TEST_F(SearchWindowTest, OffersRecentSearchesWhileTheFieldIsEmpty) {
  type(QStringLiteral("a & <b>"));
  field_->window()->activateWindow();
  press(Qt::Key_Escape);
  ASSERT_TRUE(start_->isVisible());
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_EQ(field_->text(), QStringLiteral("a & <b>"));
  EXPECT_TRUE(field_->hasFocus());
  waitForSearch();
  EXPECT_EQ(source_.searches.size(), 2U);
}

TEST_F(SearchWindowTest, SaysThatNothingWasFoundOnlyOnceThatIsKnown) {
  source_.isHeld = true;
  QTest::keyClicks(field_, QStringLiteral("<i>"));
  EXPECT_FALSE(noResults_->isVisible());
  waitForSearch();
  EXPECT_FALSE(noResults_->isVisible());
  while (source_.waiting() > 0) {
    source_.release();
    settle();
  }
  ASSERT_TRUE(noResults_->isVisible());
  const auto labels = noResults_->findChildren<QLabel*>();
  EXPECT_TRUE(std::ranges::any_of(labels, [](const QLabel* label) {
    return label->text() == QStringLiteral(u"没有包含「<i>」的文件") &&
           label->textFormat() == Qt::PlainText;
  }));
}

TEST_F(SearchWindowTest, SaysWhenThereMayBeMoreResults) {
  const auto* status = window_.findChild<StatusLine*>()->findChild<QLabel*>();
  source_.matches = 7;
  source_.isIncomplete = true;
  type(QStringLiteral("r:name"));
  EXPECT_EQ(status->text(), QStringLiteral(u"至少 7 个结果"));
  source_.isIncomplete = false;
  type(QStringLiteral("\\d"));
  EXPECT_EQ(status->text(), QStringLiteral(u"共找到 7 个结果"));
}

}  // namespace
}  // namespace zelnor::ui
