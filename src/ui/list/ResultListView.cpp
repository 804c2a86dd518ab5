#include "ui/list/ResultListView.h"

#include <QVBoxLayout>

#include "ui/Menu.h"
#include "ui/list/LoadingStrip.h"
#include "ui/list/RenameSheetView.h"
#include "ui/list/ResultListHeader.h"
#include "ui/list/ResultRows.h"
#include "ui/list/RowMenu.h"
#include "ui/list/TrashConfirmation.h"

namespace zelnor::ui {

ResultListView::ResultListView(SearchViewModel& viewModel, FileIcons* icons, QWidget& panel,
                               QWidget* parent)
    : QWidget(parent),
      viewModel_(viewModel),
      panel_(panel),
      rows_(new ResultRows(viewModel, icons, this)),
      loading_(new LoadingStrip(rows_->viewport())) {
  auto* header = new ResultListHeader(viewModel, this);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(header);
  layout->addWidget(rows_);
  setFocusProxy(rows_);

  connect(header, &ResultListHeader::sortChosen, this, &ResultListView::sortChosen);
  connect(rows_, &ResultRows::openRequested, this, &ResultListView::openRequested);
  connect(rows_, &ResultRows::previewRequested, this, &ResultListView::previewRequested);
  connect(rows_, &ResultRows::copyFileRequested, this, &ResultListView::copyFileRequested);
  connect(rows_, &ResultRows::trashRequested, this, &ResultListView::askToTrash);
  connect(rows_, &ResultRows::menuRequested, this, &ResultListView::openMenu);
  connect(rows_, &ResultRows::leftUpwards, this, &ResultListView::leftUpwards);
  connect(rows_, &ResultRows::typed, this, &ResultListView::typed);
  connect(rows_, &ResultRows::viewportMoved, this, &ResultListView::showLoading);
  connect(&viewModel, &SearchViewModel::isLoadingMoreChanged, this, &ResultListView::showLoading);
  showLoading();
}

void ResultListView::enter() { rows_->enter(); }

void ResultListView::openSelectedOrFirst() { rows_->openSelectedOrFirst(); }

void ResultListView::openMenu(const SearchResult& result, const QPoint& at) {
  if (menu_) menu_->close();
  const auto all = selectedWith(result);
  menu_ = makeRowMenu({.open = [this, result] { Q_EMIT openRequested(result); },
                       .reveal = [this, result] { Q_EMIT revealRequested(result); },
                       .preview = [this, result] { Q_EMIT previewRequested(result); },
                       .copyFile = [this, all] { Q_EMIT copyFileRequested(all); },
                       .copyPath = [this, all] { Q_EMIT copyPathRequested(all); },
                       .rename = [this, result] { askForName(result); },
                       .moveToTrash = [this, all] { askToTrash(all); }},
                      this);
  rows_->setMarked(result.id());
  connect(menu_, &QMenu::aboutToHide, rows_, [this] { rows_->setMarked(std::nullopt); });
  menu_->popup(at);
}

/// All that is selected if the row is, in the order of the list; else the row alone.
std::vector<SearchResult> ResultListView::selectedWith(const SearchResult& result) const {
  if (!viewModel_.selectedIDs().contains(result.id())) return {result};
  return viewModel_.selectedResults();
}

void ResultListView::askToTrash(const std::vector<SearchResult>& results) {
  confirmTrash(results, panel_, [self = QPointer(this), results] {
    if (self) Q_EMIT self->deleteRequested(results);
  });
}

void ResultListView::askForName(const SearchResult& result) {
  auto* sheet = new RenameSheetView(
      result.record.name, /*selectsStem=*/result.record.kind != FileKind::directory,
      [self = QPointer(this), result](const std::string& name) {
        if (self) Q_EMIT self->renameRequested(result, name);
      },
      panel_);
  sheet->open();
}

/// At the end of the list, where it is to be seen.
void ResultListView::showLoading() {
  const auto* viewport = rows_->viewport();
  const int height = loading_->sizeHint().height();
  loading_->setGeometry(0, viewport->height() - height, viewport->width(), height);
  loading_->setVisible(viewModel_.isLoadingMore() && rows_->isAtEnd(height));
}

}  // namespace zelnor::ui
