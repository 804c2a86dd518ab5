#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QListWidget>

#include "tests/ui/bookmarks/BookmarksFixture.h"
#include "ui/PlainButton.h"
#include "ui/settings/BookmarkSettingsView.h"

namespace zelnor::ui {
namespace {

class BookmarkSettingsTest : public BookmarksFixture {
 protected:
  BookmarkSettingsTest() {
    applyStyle(*qApp, Style::Motion::still);
    window_.resize(560, 400);
    page_.resize(window_.size());
    window_.show();
    window_.activateWindow();
    QApplication::processEvents();
  }

  [[nodiscard]] QListWidget& list(const QString& title) {
    for (auto* found : page_.findChildren<QListWidget*>()) {
      if (found->accessibleName() == title) return *found;
    }
    throw std::runtime_error("no such list");
  }
  [[nodiscard]] QListWidget& categories() { return list(QStringLiteral(u"分类")); }
  [[nodiscard]] QListWidget& rows() { return list(QStringLiteral(u"书签")); }
  [[nodiscard]] std::string shown() {
    std::string names;
    for (int row = 0; row < rows().count(); ++row) names += rows().item(row)->text().toStdString();
    return names;
  }
  [[nodiscard]] QPushButton* button(const QString& title) {
    for (auto* found : window_.findChildren<QPushButton*>()) {
      if (found->accessibleName() == title && found->isVisible()) return found;
    }
    return nullptr;
  }
  [[nodiscard]] QPushButton* trash() { return button(QStringLiteral(u"删除")); }
  void answer(const QString& name) {
    button(QStringLiteral(u"新建分类"))->click();
    QApplication::processEvents();
    auto* field = window_.findChild<QLineEdit*>();
    ASSERT_NE(field, nullptr);
    field->setText(name);
    button(QStringLiteral(u"确定"))->click();
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  QWidget window_;
  BookmarkSettingsView page_{bookmarks_, window_, &window_};
};

TEST_F(BookmarkSettingsTest, ShowsAllBookmarksUntilACategoryIsChosenAndAfterItIsLeft) {
  const auto work = addCategory("work");
  add("ab");
  add("c", work);
  // The keyboard alone chooses nothing.
  categories().setFocus();
  EXPECT_FALSE(bookmarks_.selectedCategoryID());
  EXPECT_EQ(shown().size(), 3U);
  categories().setCurrentRow(1);
  EXPECT_EQ(bookmarks_.selectedCategoryID(), work);
  EXPECT_EQ(shown(), "c");
  categories().setCurrentRow(0);
  EXPECT_EQ(shown(), "ab");
  QTest::mouseClick(categories().viewport(), Qt::LeftButton, {},
                    {10, categories().viewport()->height() - 2});
  EXPECT_FALSE(bookmarks_.selectedCategoryID());
  EXPECT_EQ(shown().size(), 3U);
  // A category that is gone shows nothing of the others.
  categories().setCurrentRow(1);
  bookmarks_.deleteCategory(work);
  EXPECT_EQ(shown(), "");
}

TEST_F(BookmarkSettingsTest, TheSelectedBookmarkCanBeDeletedOnce) {
  add("abc");
  EXPECT_EQ(trash(), nullptr);
  rows().setCurrentRow(1);
  ASSERT_NE(trash(), nullptr);
  // What changes elsewhere leaves the selection where it was.
  bookmarks_.addBookmark("d", "", {}, {});
  ASSERT_NE(trash(), nullptr);
  trash()->click();
  EXPECT_EQ(shown(), "acd");
  EXPECT_EQ(trash(), nullptr);
  rows().setCurrentRow(0);
  EXPECT_NE(trash(), nullptr);
}

TEST_F(BookmarkSettingsTest, ANewCategoryNeedsAName) {
  answer(QString());
  EXPECT_EQ(categories().count(), 1);
  answer(QStringLiteral(" "));
  EXPECT_EQ(categories().count(), 2);
  EXPECT_EQ(bookmarks_.categories().back().name, " ");
}

}  // namespace
}  // namespace zelnor::ui
