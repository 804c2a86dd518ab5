#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QListView>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>

#include "bookmarks/BookmarkPersistenceService.h"
#include "bookmarks/BookmarkServices.h"
#include "bookmarks/BookmarkViewModel.h"
#include "tests/support/MainThread.h"
#include "tests/support/TemporaryFolder.h"
#include "ui/Style.h"
#include "ui/bookmarks/BookmarksModel.h"
#include "ui/bookmarks/BookmarksSidebarView.h"

namespace zelnor::ui {

/// A bookmark view model on the test's own thread, which loads and then never gets to write.
class BookmarksFixture : public testing::Test {
 protected:
  BookmarksFixture() {
    main_.runUntil([this] {
      disk_.runReady();
      return !bookmarks_.categories().empty();
    });
  }

  Uuid addCategory(const std::string& name) {
    bookmarks_.addCategory(name);
    return bookmarks_.categories().back().id;
  }
  /// One bookmark for each letter.
  void add(const std::string& names, const Uuid& category = {}) {
    for (const char name : names) bookmarks_.addBookmark({name}, "", {}, category);
  }
  [[nodiscard]] std::string names(const Uuid& category = {}) const {
    std::string line;
    for (const auto& bookmark : bookmarks_.bookmarksIn(category)) line += bookmark.name;
    return line;
  }

  test::TemporaryFolder folder_;
  test::MainThread main_;
  test::MainThread disk_;
  BookmarkPersistenceService files_{folder_.path(), disk_.executor()};
  BookmarkViewModel bookmarks_{BookmarkServices{files_, main_.executor()}};
};

/// The sidebar in a panel as small as panels get.
class SidebarFixture : public BookmarksFixture {
 protected:
  SidebarFixture() {
    applyStyle(*qApp, Style::Motion::still);
    panel_.resize(600, 380);
    sidebar_ = new BookmarksSidebarView(bookmarks_, panel_, &panel_);
    sidebar_->setGeometry(0, 0, sidebar_->sizeHint().width(), panel_.height());
    list_ = sidebar_->findChild<QListView*>();
    panel_.show();
    panel_.activateWindow();
    QApplication::processEvents();
    QObject::connect(sidebar_, &BookmarksSidebarView::chosen,
                     [this](const SearchBookmark& bookmark) { chosen_ += bookmark.name; });
  }

  [[nodiscard]] QModelIndex rowOf(const std::string& name) const {
    const auto* rows = list_->model();
    for (int row = 0; row < rows->rowCount(); ++row) {
      const auto index = rows->index(row, 0);
      if (index.data().toString().toStdString() == name) return index;
    }
    return {};
  }
  void goTo(const std::string& name) {
    list_->setFocus(Qt::TabFocusReason);
    list_->setCurrentIndex(rowOf(name));
  }
  [[nodiscard]] std::string current() const {
    return list_->currentIndex().data().toString().toStdString();
  }
  [[nodiscard]] QPoint middleOf(const std::string& name) const {
    return list_->visualRect(rowOf(name)).center();
  }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(list_, key, modifiers);
  }
  void mouse(QEvent::Type type, const QPoint& at, Qt::MouseButtons held = Qt::LeftButton) {
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    auto* const port = list_->viewport();
    QMouseEvent event(type, at, port->mapToGlobal(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(port, &event);
  }
  /// Opens the menu of a row as a key does, or as the right button.
  void openMenu(const std::string& name, QContextMenuEvent::Reason reason) {
    goTo(name);
    const auto at = middleOf(name);
    QContextMenuEvent event(reason, at, list_->viewport()->mapToGlobal(at));
    QApplication::sendEvent(list_->viewport(), &event);
  }
  static QMenu* menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
  /// Presses the entry with this title in the open menu.
  static void pick(QStringView title) {
    auto* const open = menu();
    ASSERT_NE(open, nullptr);
    for (auto* entry : open->actions()) {
      if (entry->text() != title) continue;
      open->close();
      return entry->trigger();
    }
    FAIL() << "no entry " << title.toString().toStdString();
  }
  void press(QStringView title) {
    for (auto* button : panel_.findChildren<QPushButton*>()) {
      if (button->accessibleName() == title && button->isVisible()) return button->click();
    }
    FAIL() << "no button " << title.toString().toStdString();
  }

  QWidget panel_;
  BookmarksSidebarView* sidebar_;
  QListView* list_;
  std::string chosen_;
};

}  // namespace zelnor::ui
