#include "ui/panel/SearchWindow.h"

#include <QShortcut>
#include <QVBoxLayout>

#include "ui/panel/NoResultsPage.h"
#include "ui/Palette.h"
#include "ui/list/ResultListView.h"
#include "ui/panel/SearchField.h"
#include "ui/panel/StartPage.h"
#include "ui/panel/StatusLine.h"
#include "ui/panel/TypeChips.h"

namespace zelnor::ui {

namespace {

constexpr QSize kSize(780, 560);
constexpr QSize kSmallest(480, 320);

std::optional<QString> unlessEmpty(const QString& text) {
  return text.isEmpty() ? std::nullopt : std::optional(text);
}

QWidget* makeSeparator(QWidget* parent) {
  auto* line = new QWidget(parent);
  line->setFixedHeight(1);
  line->setAutoFillBackground(true);
  line->setPalette(QPalette(palette::kChip));
  return line;
}

}  // namespace

SearchWindow::SearchWindow(SearchViewModel& viewModel, QWidget* parent)
    : QWidget(parent),
      viewModel_(viewModel),
      field_(new SearchField(this)),
      chips_(new TypeChips(this)),
      pages_(new QStackedWidget(this)),
      start_(new StartPage(pages_)),
      noResults_(new NoResultsPage(pages_)),
      list_(new ResultListView(viewModel, pages_)),
      status_(new StatusLine(this)) {
  setWindowTitle(QStringLiteral("Zelnor"));
  setMinimumSize(kSmallest);
  resize(kSize);
  layOut();
  listenToViewModel();
  listenToUser();
  chips_->setCategory(viewModel.filter().category);
  start_->setRecentSearches(viewModel.recentSearches());
  status_->setSort(viewModel.sortBy(), viewModel.sortAscending());
  choosePage();
  showStatus();
  field_->setFocus();
}

void SearchWindow::layOut() {
  auto* header = new QVBoxLayout;
  header->setContentsMargins(16, 12, 16, 4);
  header->setSpacing(6);
  header->addWidget(field_);
  header->addWidget(chips_);
  pages_->addWidget(start_);
  pages_->addWidget(noResults_);
  pages_->addWidget(list_);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addLayout(header);
  layout->addWidget(makeSeparator(this));
  layout->addWidget(pages_, /*stretch=*/1);
  layout->addWidget(makeSeparator(this));
  layout->addWidget(status_);
}

void SearchWindow::listenToViewModel() {
  using Model = SearchViewModel;
  auto* model = &viewModel_;
  connect(model, &Model::queryTextChanged, this, &SearchWindow::queryChanged);
  connect(model, &Model::filterChanged, this, &SearchWindow::queryChanged);
  connect(model, &Model::resultsChanged, this, &SearchWindow::choosePage);
  connect(model, &Model::isSearchingChanged, this, &SearchWindow::searchingChanged);
  connect(model, &Model::resultCountChanged, this, &SearchWindow::showStatus);
  connect(model, &Model::isIncompleteChanged, this, &SearchWindow::showStatus);
  connect(model, &Model::errorMessageChanged, this, &SearchWindow::showStatus);
  connect(model, &Model::recentSearchesChanged, start_,
          [this] { start_->setRecentSearches(viewModel_.recentSearches()); });
  const auto showSort = [this] {
    status_->setSort(viewModel_.sortBy(), viewModel_.sortAscending());
  };
  connect(model, &Model::sortByChanged, status_, showSort);
  connect(model, &Model::sortAscendingChanged, status_, showSort);
}

void SearchWindow::listenToUser() {
  const auto search = [this](const QString& text) { viewModel_.setQueryText(text.toStdString()); };
  connect(field_, &SearchField::edited, this, search);
  connect(field_, &SearchField::leftDownwards, this, &SearchWindow::goDown);
  connect(start_, &StartPage::chosen, this, search);
  connect(start_, &StartPage::chosen, field_, qOverload<>(&QWidget::setFocus));
  connect(chips_, &TypeChips::chosen, this, [this](FileTypeCategory category) {
    auto filter = viewModel_.filter();
    filter.category = category;
    viewModel_.setFilter(filter);
  });
  connect(list_, &ResultListView::leftUpwards, field_, qOverload<>(&QWidget::setFocus));
  connect(list_, &ResultListView::typed, field_, &SearchField::insert);
  connect(list_, &ResultListView::opened, this,
          [this](const SearchResult& result) { Q_EMIT openRequested(result.record.path); });
  connect(status_, &StatusLine::sortChosen, &viewModel_, &SearchViewModel::updateSort);
  connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &SearchWindow::clear);
}

void SearchWindow::clear() {
  field_->clear();
  list_->clearSelection();
}

void SearchWindow::goDown() {
  if (pages_->currentWidget() == start_) {
    start_->enter();
  } else if (pages_->currentWidget() == list_) {
    list_->enter();
  }
}

void SearchWindow::queryChanged() {
  isAnswered_ = false;
  field_->setText(QString::fromStdString(viewModel_.queryText()));
  chips_->setCategory(viewModel_.filter().category);
  choosePage();
}

void SearchWindow::searchingChanged() {
  if (!viewModel_.isSearching()) isAnswered_ = true;
  choosePage();
  showStatus();
}

void SearchWindow::choosePage() {
  if (viewModel_.queryText().empty() && !viewModel_.filter().isActive()) {
    pages_->setCurrentWidget(start_);
  } else if (viewModel_.results().empty() && isAnswered_ && !viewModel_.isSearching()) {
    noResults_->setQuery(displayText(viewModel_.queryText()));
    pages_->setCurrentWidget(noResults_);
  } else if (!viewModel_.results().empty() || pages_->currentWidget() == start_) {
    // Until there is an answer, "nothing found" would be a guess.
    pages_->setCurrentWidget(list_);
  }
}

void SearchWindow::setIndexing(bool isIndexing, std::int64_t processedFiles,
                               std::int64_t totalFiles) {
  facts_.isIndexing = isIndexing;
  facts_.processedFiles = processedFiles;
  facts_.totalFiles = totalFiles;
  showStatus();
}

void SearchWindow::setNotice(const QString& notice) {
  facts_.notice = unlessEmpty(notice);
  showStatus();
}

void SearchWindow::setFailure(const QString& failure) {
  failure_ = unlessEmpty(failure);
  showStatus();
}

void SearchWindow::showStatus() {
  facts_.error = failure_;
  if (const auto& message = viewModel_.errorMessage(); message && !failure_) {
    facts_.error = displayText(*message);
  }
  facts_.isSearching = viewModel_.isSearching();
  facts_.resultCount = viewModel_.resultCount();
  facts_.isIncomplete = viewModel_.isIncomplete();
  status_->setFacts(facts_);
}

void SearchWindow::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
  Q_EMIT closed();
}

}  // namespace zelnor::ui
