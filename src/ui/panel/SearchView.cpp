#include "ui/panel/SearchView.h"

#include <algorithm>
#include <utility>

#include <QKeyEvent>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "bookmarks/BookmarkViewModel.h"
#include "platform/Clipboard.h"
#include "results/FileOperationService.h"
#include "ui/Sheet.h"
#include "ui/SlidingPane.h"
#include "ui/TextLabel.h"
#include "ui/bookmarks/BookmarksSidebarView.h"
#include "ui/list/ResultListView.h"
#include "ui/panel/EmptyStateView.h"
#include "ui/panel/FileOperationSheets.h"
#include "ui/panel/FilterPanelView.h"
#include "ui/panel/NativeSearchTextField.h"
#include "ui/panel/NoResultsView.h"
#include "ui/panel/PermissionGuideView.h"
#include "ui/panel/SearchBarView.h"
#include "ui/panel/StatusBarView.h"
#include "ui/panel/TypingRelay.h"

namespace zelnor::ui {

namespace {

constexpr int kSidebar = 220;
/// What the filters leave for the results at least.
constexpr int kResultsAtLeast = 96;

std::optional<QString> unlessEmpty(const QString& text) {
  return text.isEmpty() ? std::nullopt : std::optional(text);
}

std::vector<std::string> pathsOf(const std::vector<SearchResult>& results) {
  std::vector<std::string> paths;
  paths.reserve(results.size());
  for (const auto& result : results) paths.push_back(result.record.path);
  return paths;
}

QVBoxLayout* column(QWidget* parent) {
  auto* layout = new QVBoxLayout(parent);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  return layout;
}

/// `content` and the line between it and what follows it.
QWidget* withSeparator(QWidget* content, SlidingPane::Edge edge) {
  auto* both = new QWidget;
  const bool isAbove = edge == SlidingPane::Edge::top;
  auto* layout = new QBoxLayout(isAbove ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, both);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(content);
  layout->addWidget(makeSeparator(isAbove ? Qt::Horizontal : Qt::Vertical, both));
  return both;
}

SlidingPane* makePane(QWidget* content, SlidingPane::Edge edge, QWidget* parent) {
  return new SlidingPane(withSeparator(content, edge), edge, parent);
}

}  // namespace

SearchView::SearchView(const SearchPanelServices& services, QWidget* parent)
    : QWidget(parent),
      services_(services),
      search_(services.search),
      content_(new QWidget(this)),
      bar_(new SearchBarView(search_, content_)),
      filters_(new FilterPanelView(search_)),
      filterPane_(makePane(filters_, SlidingPane::Edge::top, content_)),
      bookmarks_(new BookmarksSidebarView(services.bookmarks, *this, nullptr)),
      bookmarkPane_(makePane(bookmarks_, SlidingPane::Edge::leading, content_)),
      pages_(new QStackedWidget(content_)),
      empty_(new EmptyStateView(pages_)),
      noResults_(new NoResultsView(pages_)),
      list_(new ResultListView(search_, services.icons, *this, pages_)),
      status_(new StatusBarView(content_)),
      sheets_(new FileOperationSheets(services.files, *this)) {
  setWindowTitle(QStringLiteral("Zelnor"));
  setMinimumSize(kSmallest);
  resize(kSize);
  layOut();
  listenToSearch();
  listenToBar();
  listenToList();
  listenToBookmarks();
  addShortcuts();
  empty_->setRecentSearches(search_.recentSearches());
  empty_->setBookmarks(services.bookmarks.bookmarks());
  status_->setSort(search_.sortBy(), search_.sortAscending());
  choosePage();
  showStatus();
  bar_->field().setFocus();
}

SearchView::~SearchView() = default;

void SearchView::layOut() {
  bookmarks_->setFixedWidth(type::scaled(kSidebar));
  pages_->addWidget(empty_);
  pages_->addWidget(noResults_);
  pages_->addWidget(list_);

  auto* middle = new QHBoxLayout;
  middle->setSpacing(0);
  middle->addWidget(bookmarkPane_);
  middle->addWidget(pages_, /*stretch=*/1);

  auto* rows = column(content_);
  rows->addWidget(bar_);
  rows->addWidget(filterPane_);
  rows->addLayout(middle, /*stretch=*/1);
  rows->addWidget(status_);
  column(this)->addWidget(content_);
}

void SearchView::listenToSearch() {
  using Model = SearchViewModel;
  auto* model = &search_;
  connect(model, &Model::queryTextChanged, this, &SearchView::queryChanged);
  connect(model, &Model::filterChanged, this, &SearchView::queryChanged);
  connect(model, &Model::resultsChanged, this, &SearchView::choosePage);
  connect(model, &Model::isSearchingChanged, this, &SearchView::searchingChanged);
  connect(model, &Model::resultCountChanged, this, &SearchView::showStatus);
  connect(model, &Model::isIncompleteChanged, this, &SearchView::showStatus);
  connect(model, &Model::errorMessageChanged, this, &SearchView::showStatus);
  connect(model, &Model::recentSearchesChanged, empty_,
          [this] { empty_->setRecentSearches(search_.recentSearches()); });
  const auto showSort = [this] { status_->setSort(search_.sortBy(), search_.sortAscending()); };
  connect(model, &Model::sortByChanged, status_, showSort);
  connect(model, &Model::sortAscendingChanged, status_, showSort);
  connect(status_, &StatusBarView::sortChosen, model, &Model::updateSort);
}

void SearchView::listenToBar() {
  auto* field = &bar_->field();
  connect(bar_, &SearchBarView::bookmarksToggled, this,
          [this] { setShowsBookmarks(!showBookmarks_); });
  connect(bar_, &SearchBarView::filtersToggled, this, [this] { setShowsFilters(!showFilters_); });
  connect(bar_, &SearchBarView::settingsRequested, this, &SearchView::settingsRequested);
  connect(bar_, &SearchBarView::minimizeRequested, this, &SearchView::minimizeRequested);
  connect(bar_, &SearchBarView::closeRequested, this, &SearchView::closeRequested);
  connect(field, &NativeSearchTextField::leftDownwards, this, &SearchView::goDown);
  connect(field, &NativeSearchTextField::confirmed, this, &SearchView::confirm);
  connect(empty_, &EmptyStateView::leftUpwards, field, qOverload<>(&QWidget::setFocus));
  connect(empty_, &EmptyStateView::recentChosen, this, [this, field](const std::string& query) {
    search_.setQueryText(query);
    field->setFocus();
  });
}

void SearchView::listenToList() {
  auto* field = &bar_->field();
  auto* files = &services_.files;
  connect(list_, &ResultListView::leftUpwards, field, qOverload<>(&QWidget::setFocus));
  connect(list_, &ResultListView::typed, field, &NativeSearchTextField::type);
  new TypingRelay(*list_->focusProxy(), *field);
  connect(list_, &ResultListView::sortChosen, &search_, &SearchViewModel::updateSort);
  connect(list_, &ResultListView::openRequested, files,
          [files](const SearchResult& result) { files->open(result.record.path); });
  connect(list_, &ResultListView::revealRequested, files,
          [files](const SearchResult& result) { files->reveal(result.record.path); });
  connect(list_, &ResultListView::previewRequested, this, [this](const SearchResult& result) {
    previewURL_ = result.record.path;
    Q_EMIT previewRequested(result.record.path);
  });
  connect(list_, &ResultListView::renameRequested, files,
          [files](const SearchResult& result, const std::string& name) {
            files->rename(result.record.path, name);
          });
  connect(list_, &ResultListView::deleteRequested, files, &FileOperationService::moveToTrash);
  connect(files, &FileOperationService::trashed, &search_, &SearchViewModel::removeResults);
  connect(list_, &ResultListView::copyPathRequested, this,
          [this](const std::vector<SearchResult>& results) {
            std::string text;
            for (const auto& path : pathsOf(results)) text += (text.empty() ? "" : "\n") + path;
            services_.clipboard.copyText(text);
          });
  connect(list_, &ResultListView::copyFileRequested, this,
          [this](const std::vector<SearchResult>& results) {
            services_.clipboard.copyFiles(pathsOf(results));
          });
}

void SearchView::listenToBookmarks() {
  connect(bookmarks_, &BookmarksSidebarView::chosen, this, &SearchView::applyBookmark);
  connect(bookmarks_, &BookmarksSidebarView::newRequested, this, &SearchView::saveSearch);
  connect(empty_, &EmptyStateView::bookmarkChosen, this, &SearchView::applyBookmark);
  connect(&services_.bookmarks, &BookmarkViewModel::bookmarksChanged, empty_,
          [this] { empty_->setBookmarks(services_.bookmarks.bookmarks()); });
}

/// Not while a sheet lies over the content.
void SearchView::addShortcuts() {
  const auto add = [this](const QKeySequence& keys) {
    auto* shortcut = new QShortcut(keys, content_);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    return shortcut;
  };
  connect(add(Qt::CTRL | Qt::Key_D), &QShortcut::activated, this, &SearchView::saveSearch);
  connect(add(Qt::CTRL | Qt::Key_F), &QShortcut::activated, this, [this] {
    bar_->field().setFocus();
    bar_->field().selectAll();
  });
}

void SearchView::focusSearchField() {
  if (findChild<Sheet*>(QString(), Qt::FindDirectChildrenOnly) != nullptr) return;
  bar_->field().setFocus();
  bar_->field().selectAll();
}

void SearchView::showPermissionGuide(std::function<void()> openSettings) {
  if (findChild<PermissionGuideView*>() != nullptr) return;
  (new PermissionGuideView(std::move(openSettings), *this))->open();
}

void SearchView::setShowsBookmarks(bool areShown) {
  showBookmarks_ = areShown;
  bar_->setBookmarksShown(areShown);
  bookmarkPane_->setOpen(areShown);
}

void SearchView::setShowsFilters(bool areShown) {
  showFilters_ = areShown;
  bar_->setFiltersShown(areShown);
  limitFilters();
  filterPane_->setOpen(areShown);
}

void SearchView::limitFilters() {
  const int taken = bar_->sizeHint().height() + status_->height() + kResultsAtLeast;
  filters_->setHeightLimit(std::max(height() - taken, kResultsAtLeast));
}

void SearchView::queryChanged() {
  isAnswered_ = false;
  opensAnswer_ = false;
  choosePage();
}

void SearchView::searchingChanged() {
  if (!search_.isSearching()) isAnswered_ = true;
  choosePage();
  showStatus();
  if (isAnswered_ && std::exchange(opensAnswer_, false)) list_->openSelectedOrFirst();
}

void SearchView::choosePage() {
  if (search_.queryText().empty() && !search_.filter().isActive()) {
    pages_->setCurrentWidget(empty_);
  } else if (search_.results().empty() && isAnswered_ && !search_.isSearching()) {
    noResults_->setQuery(displayText(search_.queryText()));
    pages_->setCurrentWidget(noResults_);
  } else if (!search_.results().empty() || pages_->currentWidget() == empty_) {
    // Until there is an answer, "nothing found" would be a guess.
    pages_->setCurrentWidget(list_);
  }
}

void SearchView::goDown() {
  if (pages_->currentWidget() == empty_) {
    empty_->enter();
  } else if (pages_->currentWidget() == list_) {
    list_->enter();
  }
}

/// What is shown may still be the answer to fewer letters.
void SearchView::confirm() {
  if (pages_->currentWidget() == empty_) return;
  if (isAnswered_) {
    list_->openSelectedOrFirst();
  } else {
    if (!search_.isSearching()) search_.performSearch();
    opensAnswer_ = true;
  }
}

void SearchView::saveSearch() {
  if (!search_.queryText().empty() || search_.filter().isActive()) {
    services_.bookmarks.prepareNew(search_);
  }
  bookmarks_->openAddSheet();
}

void SearchView::applyBookmark(const SearchBookmark& bookmark) {
  search_.setQueryText(bookmark.query);
  search_.setFilter(bookmark.filter);
  setShowsBookmarks(false);
  bar_->field().setFocus();
}

void SearchView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      if (previewURL_) {
        previewURL_.reset();
      } else {
        Q_EMIT closeRequested();
      }
      break;
    case Qt::Key_Space:
      handleSpaceKey();
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

void SearchView::handleSpaceKey() {
  auto selected = search_.selectedResults();
  if (selected.empty()) {
    if (search_.results().empty()) return;
    selected.push_back(search_.results().front());
    search_.setSelectedIDs({selected.front().id()});
  }
  Q_EMIT previewRequested(selected.front().record.path);
}

void SearchView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  limitFilters();
}

void SearchView::setIndexing(bool isIndexing, std::int64_t processedFiles,
                             std::int64_t totalFiles) {
  facts_.isIndexing = isIndexing;
  facts_.processedFiles = processedFiles;
  facts_.totalFiles = totalFiles;
  showStatus();
}

void SearchView::setNotice(const QString& notice) {
  facts_.notice = unlessEmpty(notice);
  showStatus();
}

void SearchView::setFailure(const QString& failure) {
  failure_ = unlessEmpty(failure);
  showStatus();
}

void SearchView::showStatus() {
  facts_.error = failure_;
  if (const auto& message = search_.errorMessage(); message && !failure_) {
    facts_.error = displayText(*message);
  }
  facts_.isSearching = search_.isSearching();
  facts_.resultCount = search_.resultCount();
  facts_.isIncomplete = search_.isIncomplete();
  status_->setFacts(facts_);
}

}  // namespace zelnor::ui
