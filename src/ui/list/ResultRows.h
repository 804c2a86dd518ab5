#pragma once

#include <optional>
#include <vector>

#include <QListView>

#include "search/SearchViewModel.h"
#include "ui/list/RowHighlights.h"
#include "ui/list/RowSelection.h"

namespace zelnor {
class FileIcons;
}

namespace zelnor::ui {

class ResultDelegate;
class SharedSelection;

/// The rows of the list of results, of which only those exist that are to be seen: selected by
/// mouse and keyboard, dragged out, and asked for more when their end comes into view.
///
/// Signals carry copies: the list may be another one before they are through.
class ResultRows final : public QListView {
  Q_OBJECT

 public:
  /// `icons` may be nullptr. It and the view model outlive the list.
  ResultRows(SearchViewModel& viewModel, FileIcons* icons, QWidget* parent);

  /// Takes the keyboard, with a row to start from.
  void enter();
  /// Asks to open the selected row, or the first where none is selected.
  void openSelectedOrFirst();
  /// Keeps the row as it is under the pointer, as long as something is about it; the pointer
  /// decides again when nothing is.
  void setMarked(std::optional<std::int64_t> id);
  [[nodiscard]] std::vector<SearchResult> selected() const { return viewModel_.selectedResults(); }
  /// The last row is to be seen, or hidden by no more than `margin` pixels.
  [[nodiscard]] bool isAtEnd(int margin) const;

 Q_SIGNALS:
  void openRequested(const zelnor::SearchResult& result);
  void previewRequested(const zelnor::SearchResult& result);
  void trashRequested(const std::vector<zelnor::SearchResult>& results);
  void copyFileRequested(const std::vector<zelnor::SearchResult>& results);
  /// `at`: in the coordinates of the screen.
  void menuRequested(const zelnor::SearchResult& result, const QPoint& at);
  /// The user went up from the first row.
  void leftUpwards();
  /// The user went on typing.
  void typed(const QString& text);
  /// The rows have been scrolled, or have another place to show in.
  void viewportMoved();

 protected:
  bool event(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// What the left button went down on.
  struct Press {
    std::int64_t id = 0;
    QPoint at;
    bool isPending = false;  ///< it selects when it comes up again
  };

  void connectChanges();
  bool pressKey(const QKeyEvent& event);
  bool moveBy(const QKeyEvent& event);
  void select(RowSelection::Gesture gesture, const QModelIndex& index);
  void withSelected(void (ResultRows::*signal)(const SearchResult&));
  void withAllSelected(void (ResultRows::*signal)(const std::vector<SearchResult>&));
  void openMenuAtCurrent();
  void drag(std::int64_t id);

  [[nodiscard]] QModelIndex indexOf(std::int64_t id) const;
  [[nodiscard]] std::vector<QModelIndex> visibleRows() const;
  void showHighlights();
  void updateHover();
  void updateRow(std::int64_t id);
  void followScrolling();

  SearchViewModel& viewModel_;
  FileIcons* icons_;
  RowHighlights highlights_;
  ResultDelegate* delegate_;
  SharedSelection* shared_;
  RowSelection selection_;
  std::optional<Press> press_;
  std::optional<std::int64_t> lastPressed_;  ///< a double click is one on the same row
  std::optional<QPoint> pointer_;
  std::optional<std::int64_t> marked_;
};

}  // namespace zelnor::ui
