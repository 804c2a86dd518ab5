#include "ui/list/SharedSelection.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <QItemSelection>
#include <QListView>
#include <QScopedValueRollback>

namespace zelnor::ui {

SharedSelection::SharedSelection(SearchViewModel& viewModel, QListView& list)
    : QObject(&list), viewModel_(viewModel), list_(list) {
  connect(&viewModel, &SearchViewModel::resultsChanged, this, [this] { sharing_ = true; });
}

void SharedSelection::start() {
  const auto* selection = list_.selectionModel();
  connect(selection, &QItemSelectionModel::selectionChanged, this, &SharedSelection::share);
  connect(selection, &QItemSelectionModel::currentChanged, this, &SharedSelection::remember);
  connect(&viewModel_, &SearchViewModel::resultsChanged, this, &SharedSelection::follow);
  connect(&viewModel_, &SearchViewModel::selectedIDsChanged, this, &SharedSelection::show);
  show();
}

void SharedSelection::moveTo(const QModelIndex& index) {
  list_.selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

std::optional<std::size_t> SharedSelection::selectedRow() const {
  const auto& rows = viewModel_.results();
  const auto& ids = viewModel_.selectedIDs();
  const auto isSelected = [&ids](const SearchResult& row) { return ids.contains(row.id()); };
  const auto current = list_.currentIndex();
  if (current.isValid()) {
    const auto row = static_cast<std::size_t>(current.row());
    if (row < rows.size() && isSelected(rows[row])) return row;
  }
  if (ids.empty()) return std::nullopt;
  const auto first = std::ranges::find_if(rows, isSelected);
  if (first == rows.end()) return std::nullopt;
  return static_cast<std::size_t>(std::distance(rows.begin(), first));
}

void SharedSelection::follow(SearchViewModel::ResultsChange change) {
  using enum SearchViewModel::ResultsChange;
  sharing_ = false;
  if (change == replaced) {
    current_.reset();
    list_.scrollToTop();
  }
  if (change == refreshed || change == removed) findCurrent();
  show();
}

/// The keyboard stays at its file, and the view where the user has scrolled it. Where the file has
/// gone, the keyboard is at what has taken its place.
void SharedSelection::findCurrent() {
  if (!current_) return;
  const auto& rows = viewModel_.results();
  auto found =
      std::ranges::find(rows, current_->record.path,
                        [](const SearchResult& row) -> const auto& { return row.record.path; });
  if (found == rows.end()) found = std::ranges::find(rows, current_->id(), &SearchResult::id);
  if (found == rows.end()) {
    found = std::ranges::find_if(
        rows, [this](const SearchResult& row) { return isRenamed(current_->record, row.record); });
  }
  if (found == rows.end()) {
    remember(list_.currentIndex());
    return;
  }
  current_ = *found;
  moveTo(list_.model()->index(static_cast<int>(std::distance(rows.begin(), found)), 0));
}

void SharedSelection::remember(const QModelIndex& current) {
  if (sharing_) return;
  current_.reset();
  if (!current.isValid()) return;
  current_ = viewModel_.results().at(static_cast<std::size_t>(current.row()));
}

/// What was selected in the list itself, by a screen reader for instance.
void SharedSelection::share() {
  if (sharing_) return;
  const QScopedValueRollback guard(sharing_, true);
  SearchViewModel::IdSet ids;
  for (const auto& range : list_.selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      ids.insert(viewModel_.results().at(static_cast<std::size_t>(row)).id());
    }
  }
  viewModel_.setSelectedIDs(std::move(ids));
  Q_EMIT shown();
}

void SharedSelection::show() {
  if (sharing_) return;
  const QScopedValueRollback guard(sharing_, true);
  // Ranges, not rows: Qt compares each with each of those before.
  QItemSelection selection;
  const auto& rows = viewModel_.results();
  const auto& ids = viewModel_.selectedIDs();
  const auto isSelected = [&](const SearchResult& row) { return ids.contains(row.id()); };
  const auto indexOf = [&](auto row) {
    return list_.model()->index(static_cast<int>(std::distance(rows.begin(), row)), 0);
  };
  for (auto first = ids.empty() ? rows.end() : std::ranges::find_if(rows, isSelected);
       first != rows.end();) {
    const auto end = std::find_if_not(first, rows.end(), isSelected);
    selection.select(indexOf(first), indexOf(std::prev(end)));
    first = std::find_if(end, rows.end(), isSelected);
  }
  list_.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  Q_EMIT shown();
}

}  // namespace zelnor::ui
