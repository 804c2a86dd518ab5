#include "search/SearchViewModel.h"

#include <algorithm>
#include <limits>
#include <map>
#include <stop_token>
#include <string_view>
#include <utility>

#include <asio/post.hpp>

#include <QPointer>

#include "search/RecentSearches.h"
#include "search/SearchServices.h"
#include "tasks/TaskGroup.h"

namespace zelnor {

namespace {

using Results = std::vector<SearchResult>;

/// While the index goes on changing, refreshes run for at most one part in so many of the time.
constexpr int kRefreshShare = 4;

constexpr std::string_view kFailurePrefix = "搜索失败：";

/// A list may hold 50,000 rows; freeing those takes longer than the main thread has between two
/// frames.
void freeElsewhere(const tasks::Executor& executor, Results results) {
  if (results.empty()) return;
  asio::post(executor, [freed = std::move(results)] {});
}

std::int64_t sizeOf(const Results& results) { return static_cast<std::int64_t>(results.size()); }

}  // namespace

/// Values that change together: assigned one by one, signalled at the end those that differ.
class SearchViewModel::Update {
 public:
  using Signal = void (SearchViewModel::*)();

  explicit Update(SearchViewModel& owner) : owner_(&owner) {}
  Update(const Update&) = delete;
  Update& operator=(const Update&) = delete;
  ~Update() {
    if (resultsChange_) Q_EMIT owner_->resultsChanged(*resultsChange_);
    for (const Signal signal : signals_) {
      if (owner_) Q_EMIT(owner_->*signal)();
    }
  }

  template <class T>
  void set(T& field, std::type_identity_t<T> value, Signal signal) {
    if (field == value) return;
    field = std::move(value);
    signals_.push_back(signal);
  }
  void resultsDid(ResultsChange change) { resultsChange_ = change; }
  void always(Signal signal) { signals_.push_back(signal); }

 private:
  QPointer<SearchViewModel> owner_;  // a slot may delete it
  std::optional<ResultsChange> resultsChange_;
  std::vector<Signal> signals_;
};

/// What runs by itself: at most one debounce, one first-page search and one further page count,
/// others are cancelled.
class SearchViewModel::Tasks {
 public:
  Tasks(SearchViewModel& owner, const SearchServices& services)
      : recents(services.defaults, services.background),
        owner_(owner),
        services_(services),
        group_(services.main) {}

  void startDebounce() {
    debounce_ =
        group_.spawn([services = services_, owner = QPointer(&owner_)](std::stop_token stop) {
          return debounce(services, owner, std::move(stop));
        });
  }
  void cancelDebounce() const { debounce_.cancel(); }

  void startSearch(const SearchQuery& query) {
    search_ = group_.spawn(
        [services = services_, owner = QPointer(&owner_), query](std::stop_token stop) {
          return search(services, owner, query, std::move(stop));
        });
  }
  void startPage(const SearchQuery& query, std::int64_t offset) {
    page_ = group_.spawn(
        [services = services_, owner = QPointer(&owner_), query, offset](std::stop_token stop) {
          return nextPage(services, owner, query, offset, std::move(stop));
        });
  }
  /// Once a refresh has asked the source, what changes from then on needs another.
  void startRefresh() {
    isStale_ = true;
    if (isRefreshing()) return;
    refresh_ =
        group_.spawn([services = services_, owner = QPointer(&owner_)](std::stop_token stop) {
          return refresh(services, owner, std::move(stop));
        });
  }
  /// A refresh that has asked already would bring back what the list no longer has, or take away
  /// what it is about to get.
  void restartRefresh() {
    if (!isRefreshing()) return;
    refresh_.cancel();
    startRefresh();
  }
  void cancelSearch() const {
    search_.cancel();
    page_.cancel();
    refresh_.cancel();
  }

  void stop(std::function<void()> stopped) {
    group_.cancelAll();
    tasks::Task::spawn(services_.main, [this, stopped = std::move(stopped)](
                                           const std::stop_token&) { return waitForEnd(stopped); });
  }

  void free(Results results) const { freeElsewhere(services_.background, std::move(results)); }

  RecentSearches recents;

 private:
  using Owner = QPointer<SearchViewModel>;

  static tasks::Async<void> debounce(SearchServices services, Owner owner, std::stop_token stop) {
    const bool quiet = co_await services.clock.sleep(kDebounce, stop);
    if (quiet && !stop.stop_requested() && owner) owner->performSearch();
  }

  static tasks::Async<void> search(SearchServices services, Owner owner, SearchQuery query,
                                   std::stop_token stop) {
    FirstPage page;
    std::optional<std::string> failure;
    try {
      page = co_await firstPage(services.source, query, kPageSize, stop);
    } catch (const std::exception& error) {
      failure = error.what();
    }
    if (stop.stop_requested() || !owner) {
      freeElsewhere(services.background, std::move(page.results));
    } else if (failure) {
      owner->searchFailed(*failure);
    } else {
      owner->searchSucceeded(std::move(page), query.text);
    }
  }

  static tasks::Async<FirstPage> firstPage(SearchSource& source, const SearchQuery& query,
                                           std::int64_t limit, const std::stop_token& stop) {
    FirstPage page;
    if (query.mode.kind == SearchMode::Kind::empty) co_return page;
    const bool comesWhole = query.mode.kind == SearchMode::Kind::regex;
    if (comesWhole) limit = std::numeric_limits<std::int64_t>::max();
    auto found = co_await source.search(query, limit, /*offset=*/0, stop);
    page.isIncomplete = found.isIncomplete;
    page.results = std::move(found.results);
    page.count = sizeOf(page.results);
    if (comesWhole || stop.stop_requested()) co_return page;
    page.count = co_await source.searchCount(query, stop);
    co_return page;
  }

  static tasks::Async<void> nextPage(SearchServices services, Owner owner, SearchQuery query,
                                     std::int64_t offset, std::stop_token stop) {
    std::optional<SearchPage> page;
    try {
      page = co_await services.source.search(query, kPageSize, offset, stop);
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the rows that are there stay
                                       // usable
    }
    if (stop.stop_requested() || !owner) co_return;
    if (page) {
      owner->pageArrived(std::move(page->results));
    } else {
      owner->pageMissed();
    }
  }

  static tasks::Async<void> refresh(SearchServices services, Owner owner, std::stop_token stop) {
    tasks::Clock::Duration pause = kRefreshPause;
    do {
      const bool waited = co_await services.clock.sleep(pause, stop);
      if (!waited || stop.stop_requested() || !owner) co_return;
      if (owner->isSearching_ || owner->isLoadingMore_) continue;
      owner->tasks_->isStale_ = false;
      const auto query = owner->lastQuery_;
      if (!query) co_return;
      const auto limit = std::max(kPageSize, owner->currentOffset_);
      const auto asked = services.clock.now();
      std::optional<FirstPage> page;
      try {
        page = co_await firstPage(services.source, *query, limit, stop);
      } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): nobody asked for it
      }
      if (stop.stop_requested() || !owner) {
        if (page) freeElsewhere(services.background, std::move(page->results));
        co_return;
      }
      if (page) owner->refreshed(std::move(*page));
      pause = std::max<tasks::Clock::Duration>(kRefreshPause,
                                               kRefreshShare * (services.clock.now() - asked));
    } while (owner && owner->tasks_->isStale_);
  }
  [[nodiscard]] bool isRefreshing() const {
    return refresh_ && !refresh_.isDone() && !refresh_.isCancelled();
  }

  tasks::Async<void> waitForEnd(std::function<void()> stopped) {
    co_await group_.wait();
    co_await recents.flush();
    stopped();
  }

  SearchViewModel& owner_;
  SearchServices services_;
  tasks::TaskGroup group_;
  tasks::Task debounce_;
  tasks::Task search_;
  tasks::Task page_;
  tasks::Task refresh_;
  bool isStale_ = false;  ///< the index has changed since the refresh asked
};

SearchViewModel::SearchViewModel(const SearchServices& services, QObject* parent)
    : QObject(parent), tasks_(std::make_unique<Tasks>(*this, services)) {}

SearchViewModel::~SearchViewModel() = default;

const std::vector<std::string>& SearchViewModel::recentSearches() const {
  return tasks_->recents.texts();
}

std::vector<SearchResult> SearchViewModel::selectedResults() const {
  std::vector<SearchResult> selected;
  if (selectedIDs_.empty()) return selected;
  std::ranges::copy_if(results_, std::back_inserter(selected), [this](const SearchResult& result) {
    return selectedIDs_.contains(result.id());
  });
  return selected;
}

void SearchViewModel::setQueryText(std::string text) {
  Update(*this).set(queryText_, std::move(text), &SearchViewModel::queryTextChanged);
  scheduleSearch();
}

void SearchViewModel::setFilter(const SearchFilter& filter) {
  Update(*this).set(filter_, filter, &SearchViewModel::filterChanged);
  scheduleSearch();
}

void SearchViewModel::setSelectedIDs(IdSet ids) {
  Update(*this).set(selectedIDs_, std::move(ids), &SearchViewModel::selectedIDsChanged);
}

void SearchViewModel::scheduleSearch() {
  tasks_->cancelDebounce();
  if (queryText_.empty() && !filter_.isActive()) {
    clearResults();
  } else {
    tasks_->startDebounce();
  }
}

void SearchViewModel::clearResults() {
  tasks_->cancelSearch();
  lastQuery_.reset();  // an emptied list has no further pages
  Update update(*this);
  if (!results_.empty()) update.resultsDid(ResultsChange::replaced);
  tasks_->free(std::exchange(results_, {}));
  removed_.clear();
  update.set(resultCount_, 0, &SearchViewModel::resultCountChanged);
  update.set(isIncomplete_, false, &SearchViewModel::isIncompleteChanged);
  update.set(isSearching_, false, &SearchViewModel::isSearchingChanged);
  update.set(isLoadingMore_, false, &SearchViewModel::isLoadingMoreChanged);
}

void SearchViewModel::performSearch() {
  tasks_->cancelSearch();
  Update update(*this);
  update.set(isSearching_, true, &SearchViewModel::isSearchingChanged);
  update.set(isLoadingMore_, false, &SearchViewModel::isLoadingMoreChanged);
  update.set(errorMessage_, std::nullopt, &SearchViewModel::errorMessageChanged);
  update.set(hasMore_, false, &SearchViewModel::hasMoreChanged);
  currentOffset_ = 0;
  removed_.clear();
  lastQuery_ = SearchQuery::parsed(queryText_, filter_, sortBy_, sortAscending_);
  tasks_->startSearch(*lastQuery_);
}

void SearchViewModel::searchSucceeded(FirstPage page, const std::string& text) {
  Update update(*this);
  show(update, std::move(page), ResultsChange::replaced);
  update.set(isSearching_, false, &SearchViewModel::isSearchingChanged);
  if (!text.empty() && tasks_->recents.record(text)) {
    update.always(&SearchViewModel::recentSearchesChanged);
  }
}

void SearchViewModel::searchFailed(const std::string& description) {
  Update update(*this);
  update.set(isSearching_, false, &SearchViewModel::isSearchingChanged);
  update.set(errorMessage_, std::string(kFailurePrefix) + description,
             &SearchViewModel::errorMessageChanged);
}

void SearchViewModel::loadMore() {
  if (!hasMore_ || isLoadingMore_ || isSearching_ || !lastQuery_) return;
  tasks_->restartRefresh();
  tasks_->startPage(*lastQuery_, currentOffset_);
  Update(*this).set(isLoadingMore_, true, &SearchViewModel::isLoadingMoreChanged);
}

void SearchViewModel::pageArrived(std::vector<SearchResult> page) {
  Update update(*this);
  currentOffset_ += sizeOf(page);
  if (const auto hidden = removed_.leaveOut(page, /*isWhole=*/false); hidden > 0) {
    update.set(totalCount_, totalCount_ - hidden, &SearchViewModel::totalCountChanged);
    update.set(resultCount_, resultCount_ - hidden, &SearchViewModel::resultCountChanged);
  }
  if (!page.empty()) update.resultsDid(ResultsChange::appended);
  std::ranges::move(page, std::back_inserter(results_));
  update.set(hasMore_, currentOffset_ < matches_, &SearchViewModel::hasMoreChanged);
  update.set(isLoadingMore_, false, &SearchViewModel::isLoadingMoreChanged);
}

void SearchViewModel::pageMissed() {
  Update(*this).set(isLoadingMore_, false, &SearchViewModel::isLoadingMoreChanged);
}

void SearchViewModel::indexChanged() {
  if (lastQuery_) tasks_->startRefresh();
}

void SearchViewModel::refreshed(FirstPage page) {
  Update update(*this);
  // The rows that are there are those of an earlier search if this one failed.
  const auto change = errorMessage_ ? ResultsChange::replaced : ResultsChange::refreshed;
  update.set(errorMessage_, std::nullopt, &SearchViewModel::errorMessageChanged);
  show(update, std::move(page), change);
}

void SearchViewModel::show(Update& update, FirstPage page, ResultsChange change) {
  matches_ = page.count;
  currentOffset_ = sizeOf(page.results);
  const bool isWhole = currentOffset_ >= matches_ && !page.isIncomplete;
  const auto visible = matches_ - removed_.leaveOut(page.results, isWhole);
  // All of each row is compared: one that was moved keeps its id.
  if (change != ResultsChange::refreshed || page.results != results_) {
    if (change == ResultsChange::refreshed)
      update.set(selectedIDs_, selectedAmong(page.results), &SearchViewModel::selectedIDsChanged);
    std::swap(results_, page.results);
    update.resultsDid(change);
  }
  tasks_->free(std::move(page.results));
  update.set(totalCount_, visible, &SearchViewModel::totalCountChanged);
  update.set(resultCount_, visible, &SearchViewModel::resultCountChanged);
  update.set(isIncomplete_, page.isIncomplete, &SearchViewModel::isIncompleteChanged);
  update.set(hasMore_, currentOffset_ < matches_, &SearchViewModel::hasMoreChanged);
}

/// The ids of the selected files in `rows`: a file that changed has a new id at its path, one whose
/// folder was moved has its id at a new path, and one that was renamed has both new.
SearchViewModel::IdSet SearchViewModel::selectedAmong(const Results& rows) const {
  if (selectedIDs_.empty()) return {};
  auto selected = selectedIDs_;
  std::map<std::string_view, const FileRecord*> missing;
  for (const auto& result : results_) {
    if (selected.erase(result.id()) > 0) missing.emplace(result.record.path, &result.record);
  }
  for (const auto& row : rows) {
    if (missing.erase(row.record.path) > 0) selected.insert(row.id());
  }
  std::map<std::int64_t, const FileRecord*> byId;
  std::map<std::int64_t, const FileRecord*> byInode;
  for (const auto& [path, record] : missing) {
    byId.emplace(record->id, record);
    byInode.emplace(record->inode, record);
  }
  for (const auto& row : rows) {
    const auto renamed = byInode.find(row.record.inode);
    const bool isRenamedOne = renamed != byInode.end() && isRenamed(*renamed->second, row.record);
    if (isRenamedOne || byId.contains(row.id())) selected.insert(row.id());
  }
  return selected;
}

void SearchViewModel::updateSort(SortField field) {
  {
    Update update(*this);
    update.set(sortAscending_, field != sortBy_ || !sortAscending_,
               &SearchViewModel::sortAscendingChanged);
    update.set(sortBy_, field, &SearchViewModel::sortByChanged);
  }
  performSearch();
}

void SearchViewModel::removeResults(const IdSet& ids) {
  tasks_->restartRefresh();
  Update update(*this);
  const auto removed = std::erase_if(results_, [&](const SearchResult& result) {
    if (!ids.contains(result.id())) return false;
    removed_.add(result);
    return true;
  });
  if (removed > 0) update.resultsDid(ResultsChange::removed);
  update.set(resultCount_, sizeOf(results_), &SearchViewModel::resultCountChanged);
  auto selected = selectedIDs_;
  for (const auto id : ids) selected.erase(id);
  update.set(selectedIDs_, std::move(selected), &SearchViewModel::selectedIDsChanged);
}

void SearchViewModel::stop(std::function<void()> stopped) { tasks_->stop(std::move(stopped)); }

}  // namespace zelnor
