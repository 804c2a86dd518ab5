#pragma once

#include <string>
#include <vector>

#include <QListView>
#include <QTest>

#include "tests/ui/SearchFixture.h"
#include "ui/list/ResultListView.h"

namespace zelnor::ui {

/// The list of results over a panel, with what it has asked for since it was made.
class ListFixture : public SearchFixture {
 protected:
  ListFixture() {
    // Qt fills a scroll bar on threads of its own, which wait for each other in a way that the
    // thread sanitizer takes for none.
    rows_.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    const auto note = [this](const std::string& what) {
      return
          [this, what](const SearchResult& result) { asked_ += what + result.record.name + ";"; };
    };
    const auto noteAll = [this](const std::string& what) {
      return [this, what](const std::vector<SearchResult>& results) {
        asked_ += what;
        for (const auto& result : results) asked_ += result.record.name + ",";
        asked_ += ";";
      };
    };
    using View = ResultListView;
    QObject::connect(&view_, &View::openRequested, &panel_, note("open "));
    QObject::connect(&view_, &View::previewRequested, &panel_, note("preview "));
    QObject::connect(&view_, &View::revealRequested, &panel_, note("reveal "));
    QObject::connect(&view_, &View::deleteRequested, &panel_, noteAll("delete "));
    QObject::connect(&view_, &View::copyFileRequested, &panel_, noteAll("copy "));
    QObject::connect(&view_, &View::copyPathRequested, &panel_, noteAll("copy path "));
    QObject::connect(&view_, &View::leftUpwards, &panel_, [this] { asked_ += "up;"; });
    QObject::connect(&view_, &View::typed, &panel_, [this](const QString& text) {
      asked_ += "typed " + text.toStdString() + ";";
    });
    QObject::connect(&view_, &View::renameRequested, &panel_,
                     [this](const SearchResult& result, const std::string& name) {
                       asked_ += "rename " + result.record.name + " " + name + ";";
                     });
    panel_.resize(680, 400);
    view_.setGeometry(panel_.rect());
    panel_.show();
    panel_.activateWindow();
  }

  void showMatches(std::int64_t matches) {
    source_.matches = matches;
    search("report");
  }
  void refresh() {
    model_.indexChanged();
    settle();
    clock_.advance(SearchViewModel::kRefreshPause);
    settle();
  }

  [[nodiscard]] QModelIndex index(int row) const { return rows_.model()->index(row, 0); }
  [[nodiscard]] QPoint place(int row) const { return rows_.visualRect(index(row)).center(); }
  void click(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mouseClick(rows_.viewport(), Qt::LeftButton, modifiers, place(row));
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&rows_, key, modifiers);
  }
  [[nodiscard]] auto selectedRows() const { return rows_.selectionModel()->selectedRows(); }
  /// What was asked for since the last time.
  std::string asked() { return std::exchange(asked_, {}); }

  QWidget panel_;
  ResultListView view_{model_, nullptr, panel_, &panel_};
  QListView& rows_ = *view_.findChild<QListView*>();

 private:
  std::string asked_;
};

}  // namespace zelnor::ui
