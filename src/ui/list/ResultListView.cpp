#include "ui/list/ResultListView.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <QItemSelection>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

#include "ui/Palette.h"
#include "ui/list/ResultDelegate.h"
#include "ui/list/ResultListModel.h"

namespace zelnor::ui {

ResultListView::ResultListView(SearchViewModel& viewModel, QWidget* parent)
    : QListView(parent), viewModel_(viewModel) {
  // Before the model, which is connected next: while rows go, their selection is nobody's choice.
  connect(&viewModel, &SearchViewModel::resultsChanged, this, [this] { sharing_ = true; });
  setModel(new ResultListModel(viewModel, this));
  setItemDelegate(new ResultDelegate(this));
  setUniformItemSizes(true);
  setSelectionMode(ExtendedSelection);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameShape(NoFrame);
  setMouseTracking(true);
  setAttribute(Qt::WA_Hover);

  connect(this, &QListView::doubleClicked, this, &ResultListView::open);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &ResultListView::loadMoreAtTheEnd);
  connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &ResultListView::loadMoreAtTheEnd);
  // After the model.
  connect(&viewModel, &SearchViewModel::resultsChanged, this, &ResultListView::follow);
  connect(&viewModel, &SearchViewModel::selectedIDsChanged, this, &ResultListView::showSelection);
}

void ResultListView::enter() {
  setFocus();
  if (!currentIndex().isValid() && model()->rowCount() > 0) setCurrentIndex(model()->index(0, 0));
}

void ResultListView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      open(currentIndex());
      return;
    case Qt::Key_Up:
      if (currentIndex().row() <= 0) {
        Q_EMIT leftUpwards();
        return;
      }
      break;
    default:
      break;
  }
  const bool isCommand =
      event->modifiers().testAnyFlags(Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  const auto text = event->text();
  if (!isCommand && !text.isEmpty() && text.front().isPrint() && text.front() != u' ') {
    Q_EMIT typed(text);
    return;
  }
  QListView::keyPressEvent(event);
}

void ResultListView::selectionChanged(const QItemSelection& selected,
                                      const QItemSelection& deselected) {
  QListView::selectionChanged(selected, deselected);
  if (sharing_) return;
  const QScopedValueRollback guard(sharing_, true);
  SearchViewModel::IdSet ids;
  for (const auto& range : selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      ids.insert(viewModel_.results().at(static_cast<std::size_t>(row)).id());
    }
  }
  viewModel_.setSelectedIDs(std::move(ids));
}

void ResultListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QListView::currentChanged(current, previous);
  if (sharing_) return;
  current_ = current.isValid() ? std::optional(resultAt(current)) : std::nullopt;
}

void ResultListView::follow(SearchViewModel::ResultsChange change) {
  sharing_ = false;
  if (change == SearchViewModel::ResultsChange::replaced) scrollToTop();
  if (change == SearchViewModel::ResultsChange::refreshed) findCurrent();
  showSelection();
}

/// The keyboard stays at its file, and the view where the user has scrolled it.
void ResultListView::findCurrent() {
  if (!current_) return;
  const auto& rows = viewModel_.results();
  auto found =
      std::ranges::find(rows, current_->record.path,
                        [](const SearchResult& row) -> const auto& { return row.record.path; });
  if (found == rows.end()) found = std::ranges::find(rows, current_->id(), &SearchResult::id);
  if (found == rows.end()) return;
  current_ = *found;
  setAutoScroll(false);
  const auto row = static_cast<int>(std::distance(rows.begin(), found));
  selectionModel()->setCurrentIndex(model()->index(row, 0), QItemSelectionModel::NoUpdate);
  setAutoScroll(true);
}

const SearchResult& ResultListView::resultAt(const QModelIndex& index) const {
  return viewModel_.results().at(static_cast<std::size_t>(index.row()));
}

void ResultListView::showSelection() {
  if (sharing_) return;
  const QScopedValueRollback guard(sharing_, true);
  // Ranges, not rows: Qt compares each with each of those before.
  QItemSelection selection;
  const auto& rows = viewModel_.results();
  const auto& ids = viewModel_.selectedIDs();
  const auto isSelected = [&](const SearchResult& row) { return ids.contains(row.id()); };
  const auto indexOf = [&](auto row) {
    return model()->index(static_cast<int>(std::distance(rows.begin(), row)), 0);
  };
  for (auto first = ids.empty() ? rows.end() : std::ranges::find_if(rows, isSelected);
       first != rows.end();) {
    const auto end = std::find_if_not(first, rows.end(), isSelected);
    selection.select(indexOf(first), indexOf(std::prev(end)));
    first = std::find_if(end, rows.end(), isSelected);
  }
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void ResultListView::loadMoreAtTheEnd() {
  const auto* bar = verticalScrollBar();
  if (bar->value() >= bar->maximum() - bar->pageStep()) viewModel_.loadMore();
}

void ResultListView::open(const QModelIndex& index) {
  if (index.isValid()) Q_EMIT opened(resultAt(index));
}

}  // namespace zelnor::ui
