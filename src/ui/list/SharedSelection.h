#pragma once

#include <cstddef>
#include <optional>

#include <QObject>

#include "search/SearchViewModel.h"

class QListView;
class QModelIndex;

namespace zelnor::ui {

/// Keeps the selection of a list and that of the view model the same, and the keyboard at its file
/// while the rows of the list change. The view model's is the one that lasts: it outlives rows.
class SharedSelection final : public QObject {
  Q_OBJECT

 public:
  /// Made before the list's model: what becomes of the selection while rows go is nobody's choice.
  SharedSelection(SearchViewModel& viewModel, QListView& list);

  /// Begins, once the list has its model.
  void start();
  /// Brings the keyboard to a row without selecting it.
  void moveTo(const QModelIndex& index);
  /// The row that the keyboard is at if it is selected, else the first of the selected ones.
  [[nodiscard]] std::optional<std::size_t> selectedRow() const;

 Q_SIGNALS:
  /// The list shows the results as they are now, and what is selected among them.
  void shown();

 private:
  void follow(SearchViewModel::ResultsChange change);
  void findCurrent();
  void remember(const QModelIndex& current);
  void share();
  void show();

  SearchViewModel& viewModel_;
  QListView& list_;
  bool sharing_ = false;  ///< the selection is being carried over, in either direction
  std::optional<SearchResult> current_;  ///< the row that the keyboard is at
};

}  // namespace zelnor::ui
