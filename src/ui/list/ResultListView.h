#pragma once

#include <optional>

#include <QListView>

#include "search/SearchViewModel.h"

namespace zelnor::ui {

/// The list of results: asks for the next page when its end comes into view, and shares its
/// selection with the view model, where it outlives the rows.
class ResultListView final : public QListView {
  Q_OBJECT

 public:
  /// The view model outlives the view.
  explicit ResultListView(SearchViewModel& viewModel, QWidget* parent = nullptr);

  /// Takes the keyboard, with a row to start from.
  void enter();

 Q_SIGNALS:
  void opened(const zelnor::SearchResult& result);
  /// The user went up from the first row.
  void leftUpwards();
  /// The user went on typing.
  void typed(const QString& text);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

 private:
  void follow(SearchViewModel::ResultsChange change);
  void findCurrent();
  [[nodiscard]] const SearchResult& resultAt(const QModelIndex& index) const;
  void loadMoreAtTheEnd();
  void showSelection();
  void open(const QModelIndex& index);

  SearchViewModel& viewModel_;
  bool sharing_ = false;  ///< the selection is being carried over, in either direction
  std::optional<SearchResult> current_;  ///< the row that the keyboard is at
};

}  // namespace zelnor::ui
