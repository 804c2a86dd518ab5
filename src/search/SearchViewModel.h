#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <QObject>

#include "search/RemovedRows.h"
#include "search/SearchFilter.h"
#include "search/SearchQuery.h"
#include "search/SearchResult.h"
#include "search/SortField.h"

namespace zelnor {

struct SearchServices;

/// The state behind the search window: turns edits of query and filter into debounced searches,
/// loads further pages on demand, and remembers recent searches.
///
/// Main thread only. Changes are signalled there, once all values that change together have
/// changed. Texts are UTF-8.
class SearchViewModel final : public QObject {
  Q_OBJECT

 public:
  static constexpr std::int64_t kPageSize = 200;
  static constexpr std::chrono::milliseconds kDebounce{150};
  /// Between a change of the index and the look at what it means for the list.
  static constexpr std::chrono::milliseconds kRefreshPause{250};

  using IdSet = std::set<std::int64_t>;

  /// What happened to the list of results.
  enum class ResultsChange : std::uint8_t {
    replaced,   ///< another list
    appended,   ///< further rows follow those that were there
    removed,    ///< some rows have gone, the rest kept its order
    refreshed,  ///< the same search, answered by the index as it is now
  };

  explicit SearchViewModel(const SearchServices& services, QObject* parent = nullptr);
  /// Gives up what is under way; tasks that find the view model gone end quietly.
  ~SearchViewModel() override;

  [[nodiscard]] const std::string& queryText() const { return queryText_; }
  [[nodiscard]] const SearchFilter& filter() const { return filter_; }
  /// The loaded rows in the engine's order. Valid until the next change.
  [[nodiscard]] const std::vector<SearchResult>& results() const { return results_; }
  /// A first page is being searched for.
  [[nodiscard]] bool isSearching() const { return isSearching_; }
  [[nodiscard]] bool isLoadingMore() const { return isLoadingMore_; }
  [[nodiscard]] const IdSet& selectedIDs() const { return selectedIDs_; }
  [[nodiscard]] SortField sortBy() const { return sortBy_; }
  [[nodiscard]] bool sortAscending() const { return sortAscending_; }
  /// Matches of the last search, loaded or not; once refreshed, without removed rows.
  [[nodiscard]] std::int64_t totalCount() const { return totalCount_; }
  /// The number to show: the matches of the last search, or the rows that `removeResults` left.
  [[nodiscard]] std::int64_t resultCount() const { return resultCount_; }
  /// There may be more matches than are counted: some names took too long to look at.
  [[nodiscard]] bool isIncomplete() const { return isIncomplete_; }
  [[nodiscard]] bool hasMore() const { return hasMore_; }
  /// Why the last search failed, in words for the user.
  [[nodiscard]] const std::optional<std::string>& errorMessage() const { return errorMessage_; }
  /// Newest first.
  [[nodiscard]] const std::vector<std::string>& recentSearches() const;
  /// The selected rows, in the order of the list.
  [[nodiscard]] std::vector<SearchResult> selectedResults() const;

  /// These two schedule a search, also when the value stays the same.
  void setQueryText(std::string text);
  void setFilter(const SearchFilter& filter);
  void setSelectedIDs(IdSet ids);

  /// Searches once nothing more was asked for during `kDebounce`. With neither query nor filter the
  /// list is emptied at once instead, and a search under way is given up.
  void scheduleSearch();
  /// Starts a search for the first page now; one under way is given up. The list stays until the
  /// answer is there.
  void performSearch();
  /// Fetches the next page, if there is one and nothing is being fetched. A failure is silent; a
  /// page that comes too late for its search is dropped.
  void loadMore();
  /// Sorts by `field`, ascending; the other way round if that was the sort field already. Searches
  /// at once.
  void updateSort(SortField field);
  /// Forgets rows, for instance of files that were moved to the trash. Until the next search they
  /// do not come back, also while the index still holds them where they were, or where the trash
  /// is.
  void removeResults(const IdSet& ids);

  /// The index may hold other rows now: brings the list up to date after `kRefreshPause`, without
  /// a sign of searching. As many rows as were loaded stay loaded, and selected files stay
  /// selected. After a search that failed its rows come now, if there is no failure any more.
  void indexChanged();

  /// Gives up everything under way. Calls `stopped` (main thread) when all of it has ended and
  /// everything is stored; the view model must live until then.
  void stop(std::function<void()> stopped);

 Q_SIGNALS:
  void queryTextChanged();
  void filterChanged();
  void resultsChanged(zelnor::SearchViewModel::ResultsChange change);
  void isSearchingChanged();
  void isLoadingMoreChanged();
  void selectedIDsChanged();
  void sortByChanged();
  void sortAscendingChanged();
  void totalCountChanged();
  void resultCountChanged();
  void isIncompleteChanged();
  void hasMoreChanged();
  void errorMessageChanged();
  void recentSearchesChanged();

 private:
  class Tasks;
  class Update;
  struct FirstPage {
    std::vector<SearchResult> results;
    std::int64_t count = 0;
    bool isIncomplete = false;
  };

  void clearResults();
  void searchSucceeded(FirstPage page, const std::string& text);
  void searchFailed(const std::string& description);
  void pageArrived(std::vector<SearchResult> page);
  void pageMissed();
  void refreshed(FirstPage page);
  void show(Update& update, FirstPage page, ResultsChange change);
  [[nodiscard]] IdSet selectedAmong(const std::vector<SearchResult>& rows) const;

  std::string queryText_;
  SearchFilter filter_;
  std::vector<SearchResult> results_;
  bool isSearching_ = false;
  bool isLoadingMore_ = false;
  IdSet selectedIDs_;
  SortField sortBy_ = SortField::relevance;
  bool sortAscending_ = true;
  std::int64_t totalCount_ = 0;
  std::int64_t resultCount_ = 0;
  bool isIncomplete_ = false;
  bool hasMore_ = false;
  std::optional<std::string> errorMessage_;
  std::int64_t matches_ = 0;        ///< as the source counts them, removed rows included
  std::int64_t currentOffset_ = 0;  ///< in what the source has, removed rows included
  RemovedRows removed_;
  std::optional<SearchQuery> lastQuery_;  ///< the query of the list, if it has one
  std::unique_ptr<Tasks> tasks_;
};

}  // namespace zelnor
