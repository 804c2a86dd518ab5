#include "ui/list/ResultRows.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include "results/FileIcons.h"
#include "ui/list/ResultDelegate.h"
#include "ui/list/ResultListModel.h"
#include "ui/list/RowDrag.h"
#include "ui/list/RowIcon.h"
#include "ui/list/SharedSelection.h"

namespace zelnor::ui {

namespace {

constexpr int kDraggedIcon = 28;

const FileRecord* recordOf(const QModelIndex& index) {
  return index.data(ResultListModel::recordRole).value<const FileRecord*>();
}

RowSelection::Gesture gestureOf(Qt::KeyboardModifiers modifiers) {
  if (modifiers.testFlag(Qt::ControlModifier)) return RowSelection::Gesture::toggle;
  if (modifiers.testFlag(Qt::ShiftModifier)) return RowSelection::Gesture::range;
  return RowSelection::Gesture::alone;
}

}  // namespace

ResultRows::ResultRows(SearchViewModel& viewModel, FileIcons* icons, QWidget* parent)
    : QListView(parent),
      viewModel_(viewModel),
      icons_(icons),
      highlights_(*this),
      delegate_(new ResultDelegate(highlights_, icons, this)),
      shared_(new SharedSelection(viewModel, *this)) {
  setModel(new ResultListModel(viewModel, this));
  setItemDelegate(delegate_);
  setAccessibleName(QStringLiteral(u"搜索结果"));
  setUniformItemSizes(true);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(NoEditTriggers);
  setAutoScroll(false);  // what is clicked stays under the pointer
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameShape(NoFrame);
  setMouseTracking(true);
  shared_->start();
  connectChanges();
}

void ResultRows::connectChanges() {
  connect(shared_, &SharedSelection::shown, this, &ResultRows::showHighlights);
  connect(&highlights_, &RowHighlights::changed, this, &ResultRows::updateRow);
  if (icons_ != nullptr) {
    connect(icons_, &FileIcons::arrived, viewport(), qOverload<>(&QWidget::update));
  }
  const auto* bar = verticalScrollBar();
  connect(bar, &QScrollBar::valueChanged, this, &ResultRows::followScrolling);
  connect(bar, &QScrollBar::rangeChanged, this, &ResultRows::followScrolling);
}

void ResultRows::enter() {
  setFocus();
  if (const auto row = shared_->selectedRow()) {
    if (currentIndex().isValid()) return;
    const auto index = model()->index(static_cast<int>(*row), 0);
    shared_->moveTo(index);
    scrollTo(index);
  } else if (model()->rowCount() > 0) {
    const auto index = currentIndex().isValid() ? currentIndex() : model()->index(0, 0);
    select(RowSelection::Gesture::alone, index);
  }
}

void ResultRows::openSelectedOrFirst() {
  if (viewModel_.results().empty()) return;
  const SearchResult result = viewModel_.results().at(shared_->selectedRow().value_or(0));
  Q_EMIT openRequested(result);
}

void ResultRows::setMarked(std::optional<std::int64_t> id) {
  marked_ = id;
  updateHover();
}

bool ResultRows::isAtEnd(int margin) const {
  const auto* bar = verticalScrollBar();
  return bar->value() >= bar->maximum() - margin;
}

bool ResultRows::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::ApplicationFontChange:
    case QEvent::FontChange:
    case QEvent::StyleChange:
      delegate_->updateFonts();
      scheduleDelayedItemsLayout();
      break;
    default:
      break;
  }
  return QListView::event(event);
}

bool ResultRows::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::Leave) {
    pointer_.reset();
    updateHover();
  }
  return QListView::viewportEvent(event);
}

void ResultRows::resizeEvent(QResizeEvent* event) {
  QListView::resizeEvent(event);
  showHighlights();
  Q_EMIT viewportMoved();
}

void ResultRows::keyPressEvent(QKeyEvent* event) {
  if (pressKey(*event) || moveBy(*event)) return;
  const bool isCommand =
      event->modifiers().testAnyFlags(Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  const auto text = event->text();
  if (!isCommand && !text.isEmpty() && text.front().isPrint() && text.front() != u' ') {
    Q_EMIT typed(text);
  } else if (event->key() == Qt::Key_Space) {
    event->ignore();  // with nothing selected, it is for who shows the list to decide
  } else {
    QListView::keyPressEvent(event);
  }
}

/// Does what the key does with the selected rows; held down, it does so once.
bool ResultRows::pressKey(const QKeyEvent& event) {
  const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
  if (event.matches(QKeySequence::Copy)) {
    withAllSelected(&ResultRows::copyFileRequested);
    return true;
  }
  if (event.key() == Qt::Key_Menu ||
      (event.key() == Qt::Key_F10 && modifiers == Qt::ShiftModifier)) {
    openMenuAtCurrent();
    return true;
  }
  if (event.key() == Qt::Key_Space && modifiers == Qt::ControlModifier) {
    if (currentIndex().isValid()) select(RowSelection::Gesture::toggle, currentIndex());
    return true;
  }
  if (modifiers != Qt::NoModifier) return false;
  switch (event.key()) {
    case Qt::Key_Space:
      if (!shared_->selectedRow()) return false;
      if (!event.isAutoRepeat()) withSelected(&ResultRows::previewRequested);
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (!event.isAutoRepeat()) withSelected(&ResultRows::openRequested);
      return true;
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
      if (!event.isAutoRepeat()) withAllSelected(&ResultRows::trashRequested);
      return true;
    default:
      return false;
  }
}

bool ResultRows::moveBy(const QKeyEvent& event) {
  const auto action = [&event]() -> std::optional<CursorAction> {
    switch (event.key()) {
      case Qt::Key_Up:
        return MoveUp;
      case Qt::Key_Down:
        return MoveDown;
      case Qt::Key_PageUp:
        return MovePageUp;
      case Qt::Key_PageDown:
        return MovePageDown;
      case Qt::Key_Home:
        return MoveHome;
      case Qt::Key_End:
        return MoveEnd;
      default:
        return std::nullopt;
    }
  }();
  const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
  if (!action || modifiers.testAnyFlags(Qt::AltModifier | Qt::MetaModifier)) return false;
  if (event.key() == Qt::Key_Up && modifiers == Qt::NoModifier && currentIndex().row() <= 0) {
    Q_EMIT leftUpwards();
    return true;
  }
  const auto next = moveCursor(*action, modifiers);
  if (!next.isValid()) return true;
  if (modifiers.testFlag(Qt::ControlModifier)) {
    // The keyboard is where nothing else shows it.
    window()->setAttribute(Qt::WA_KeyboardFocusChange);
    shared_->moveTo(next);
  } else {
    select(gestureOf(modifiers), next);
  }
  scrollTo(next);
  return true;
}

void ResultRows::select(RowSelection::Gesture gesture, const QModelIndex& index) {
  shared_->moveTo(index);
  const auto at = static_cast<std::size_t>(index.row());
  viewModel_.setSelectedIDs(
      selection_.after(gesture, viewModel_.results(), at, viewModel_.selectedIDs()));
}

void ResultRows::withSelected(void (ResultRows::*signal)(const SearchResult&)) {
  const auto row = shared_->selectedRow();
  if (!row) return;
  const SearchResult result = viewModel_.results().at(*row);
  Q_EMIT(this->*signal)(result);
}

void ResultRows::withAllSelected(void (ResultRows::*signal)(const std::vector<SearchResult>&)) {
  const auto results = viewModel_.selectedResults();
  if (!results.empty()) Q_EMIT(this->*signal)(results);
}

void ResultRows::mousePressEvent(QMouseEvent* event) {
  const auto index = indexAt(event->position().toPoint());
  const auto* record = recordOf(index);
  press_.reset();
  if (event->button() != Qt::LeftButton || record == nullptr) return;
  const auto id = record->id;
  const auto gesture = gestureOf(event->modifiers());
  // What is pressed may be about to be dragged, together with all that is selected.
  const bool isPending =
      gesture == RowSelection::Gesture::alone && viewModel_.selectedIDs().contains(id);
  press_ = Press{.id = id, .at = event->position().toPoint(), .isPending = isPending};
  lastPressed_ = id;
  if (isPending) {
    shared_->moveTo(index);
  } else {
    select(gesture, index);
  }
}

void ResultRows::mouseMoveEvent(QMouseEvent* event) {
  pointer_ = event->position().toPoint();
  updateHover();
  if (!press_ || !event->buttons().testFlag(Qt::LeftButton)) return;
  if ((*pointer_ - press_->at).manhattanLength() >= QApplication::startDragDistance()) {
    const auto id = press_->id;
    press_.reset();
    drag(id);
  }
}

void ResultRows::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !press_) return;
  const Press press = *press_;
  press_.reset();
  if (!press.isPending) return;
  if (const auto index = indexOf(press.id); index.isValid()) {
    select(RowSelection::Gesture::alone, index);
  }
}

void ResultRows::mouseDoubleClickEvent(QMouseEvent* event) {
  const auto index = indexAt(event->position().toPoint());
  const auto* record = recordOf(index);
  const bool isTwice = record != nullptr && lastPressed_ == record->id;
  if (event->button() != Qt::LeftButton || event->modifiers() != Qt::NoModifier || !isTwice) {
    mousePressEvent(event);
    return;
  }
  Q_EMIT openRequested(SearchResult{*record});
}

void ResultRows::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() == QContextMenuEvent::Keyboard) {
    openMenuAtCurrent();
  } else if (const auto* record = recordOf(indexAt(event->pos()))) {
    Q_EMIT menuRequested(SearchResult{*record}, event->globalPos());
  }
}

void ResultRows::openMenuAtCurrent() {
  const auto* record = recordOf(currentIndex());
  if (record == nullptr) return;
  const SearchResult result{*record};
  scrollTo(currentIndex());
  Q_EMIT menuRequested(result, viewport()->mapToGlobal(visualRect(currentIndex()).center()));
}

/// Drags all that is selected, if the row is.
void ResultRows::drag(std::int64_t id) {
  const auto* record = recordOf(indexOf(id));
  if (record == nullptr || !viewModel_.selectedIDs().contains(id)) return;
  const double ratio = devicePixelRatioF();
  QPixmap icon(QSize(kDraggedIcon, kDraggedIcon) * ratio);
  icon.setDevicePixelRatio(ratio);
  icon.fill(Qt::transparent);
  QPainter painter(&icon);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  paintRowIcon(painter, QRect(0, 0, kDraggedIcon, kDraggedIcon), *record, icons_);
  painter.end();
  const auto files = viewModel_.selectedResults();
  dragOut(*this, files, dragPicture(icon, files.size()));
}

/// Looks among the rows that are to be seen.
QModelIndex ResultRows::indexOf(std::int64_t id) const {
  for (const auto& index : visibleRows()) {
    if (const auto* record = recordOf(index); record != nullptr && record->id == id) return index;
  }
  return {};
}

std::vector<QModelIndex> ResultRows::visibleRows() const {
  std::vector<QModelIndex> rows;
  for (auto index = indexAt(QPoint(0, 0)); index.isValid();
       index = index.siblingAtRow(index.row() + 1)) {
    if (visualRect(index).top() >= viewport()->height()) break;
    rows.push_back(index);
  }
  return rows;
}

void ResultRows::showHighlights() {
  std::vector<RowHighlights::Row> rows;
  for (const auto& index : visibleRows()) {
    const auto* record = recordOf(index);
    if (record == nullptr) continue;
    rows.push_back({.id = record->id, .isSelected = viewModel_.selectedIDs().contains(record->id)});
  }
  highlights_.show(std::move(rows));
  updateHover();
}

void ResultRows::updateHover() {
  const auto* record = pointer_ ? recordOf(indexAt(*pointer_)) : nullptr;
  const auto under = record != nullptr ? std::optional(record->id) : std::nullopt;
  highlights_.setHovered(marked_ ? marked_ : under);
}

void ResultRows::updateRow(std::int64_t id) {
  if (const auto index = indexOf(id); index.isValid()) update(index);
}

void ResultRows::followScrolling() {
  showHighlights();
  Q_EMIT viewportMoved();
  if (isAtEnd(verticalScrollBar()->pageStep())) viewModel_.loadMore();
}

}  // namespace zelnor::ui
