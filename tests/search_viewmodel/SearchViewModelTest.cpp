#include <limits>
#include <map>
#include <thread>

#include <asio/post.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "search/SearchServices.h"
#include "search/SearchViewModel.h"
#include "tasks/ThreadPool.h"
#include "tests/search_viewmodel/FakeSearchSource.h"
#include "tests/support/MainThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/MemoryDefaultsStore.h"

namespace zelnor {
namespace {

using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;
using Ids = std::vector<std::int64_t>;

constexpr auto kRecent = "RecentSearches";

class SearchViewModelTest : public testing::Test {
 protected:
  ~SearchViewModelTest() override { settle(); }

  /// Everything that can happen without time passing has happened.
  void settle() { main_.runReady(); }
  void pass(tasks::Clock::Duration time) {
    settle();  // who wants to sleep does
    clock_.advance(time);
    settle();
  }
  void search(const std::string& text) {
    model_->setQueryText(text);
    pass(SearchViewModel::kDebounce);
  }
  void release() {
    source_.release();
    settle();
  }
  /// Restarts the view model, as a new start of the program would.
  void start() {
    stop();
    model_ = std::make_unique<SearchViewModel>(services_);
  }
  void stop() {
    bool stopped = false;
    model_->stop([&] { stopped = true; });
    main_.runUntil([&] { return stopped; });
  }
  static SearchFilter images() {
    SearchFilter filter;
    filter.category = FileTypeCategory::image;
    return filter;
  }
  void refresh() {
    model_->indexChanged();
    pass(SearchViewModel::kRefreshPause);
  }
  [[nodiscard]] Ids ids() const {
    Ids ids;
    for (const auto& result : model_->results()) ids.push_back(result.id());
    return ids;
  }

  test::ManualClock clock_;
  test::MemoryDefaultsStore defaults_;
  test::FakeSearchSource source_;
  test::MainThread main_;  // outlives the threads that resume on it
  tasks::ThreadPool background_{1};
  SearchServices services_{source_, clock_, defaults_, main_.executor(), background_.executor()};
  std::unique_ptr<SearchViewModel> model_ = std::make_unique<SearchViewModel>(services_);
};

TEST_F(SearchViewModelTest, TypingSearchesOnceAfterTheLastKey) {
  for (const auto* text : {"r", "re", "rep", "repo", "report"}) {
    model_->setQueryText(text);
    pass(100ms);
  }
  pass(49ms);
  EXPECT_THAT(source_.searches, IsEmpty());
  pass(1ms);
  ASSERT_EQ(source_.searches.size(), 1U);
  EXPECT_EQ(source_.searches[0].query, SearchQuery::parsed("report"));
  EXPECT_EQ(source_.searches[0].limit, 200);

  model_->setQueryText("report");  // also when nothing changed
  pass(SearchViewModel::kDebounce);
  model_->setFilter(images());
  pass(SearchViewModel::kDebounce);
  ASSERT_EQ(source_.searches.size(), 3U);
  EXPECT_EQ(source_.searches[2].query, SearchQuery::parsed("report", images()));
}

TEST_F(SearchViewModelTest, ClearingEmptiesTheListAtOnceAndGivesUpWhatIsUnderWay) {
  source_.matches = 450;
  search("report");
  source_.isHeld = true;
  model_->loadMore();
  search("reports");
  ASSERT_TRUE(model_->isSearching());

  model_->setQueryText("");
  EXPECT_THAT(model_->results(), IsEmpty());
  EXPECT_EQ(model_->resultCount(), 0);
  EXPECT_EQ(model_->totalCount(), 450);
  EXPECT_FALSE(model_->isSearching());

  while (source_.waiting() > 0) release();
  model_->loadMore();
  pass(SearchViewModel::kDebounce);
  EXPECT_THAT(model_->results(), IsEmpty());
  EXPECT_EQ(source_.searches.size(), 3U);
}

TEST_F(SearchViewModelTest, AQueryWithNothingToMatchAsksNobody) {
  source_.matches = 7;
  search("report");
  search("  ");
  EXPECT_THAT(model_->results(), IsEmpty());
  EXPECT_EQ(model_->totalCount(), 0);
  EXPECT_THAT(model_->recentSearches(), ElementsAre("  ", "report"));

  search("report");
  model_->setFilter(images());
  search("");
  EXPECT_THAT(model_->results(), IsEmpty());
  EXPECT_EQ(model_->resultCount(), 0);
  EXPECT_FALSE(model_->isSearching());
  EXPECT_THAT(model_->recentSearches(), ElementsAre("report", "  "));
  EXPECT_EQ(source_.searches.size(), 2U);
}

TEST_F(SearchViewModelTest, PagesFollowEachOtherUntilAllMatchesAreThere) {
  source_.matches = 450;
  search("report");
  EXPECT_EQ(model_->results().size(), 200U);
  EXPECT_EQ(model_->resultCount(), 450);
  EXPECT_TRUE(model_->hasMore());

  source_.isHeld = true;
  model_->loadMore();
  model_->loadMore();  // one at a time
  settle();
  EXPECT_TRUE(model_->isLoadingMore());
  source_.isHeld = false;
  release();
  model_->loadMore();
  settle();
  EXPECT_EQ(model_->results().size(), 450U);
  EXPECT_EQ(model_->results().back(), test::FakeSearchSource::row(449));
  EXPECT_FALSE(model_->hasMore());
  EXPECT_FALSE(model_->isLoadingMore());
  model_->loadMore();
  settle();
  ASSERT_EQ(source_.searches.size(), 3U);
  EXPECT_EQ(source_.searches[2].offset, 400);
  EXPECT_EQ(source_.counts.size(), 1U);
}

TEST_F(SearchViewModelTest, APageOfAnEarlierSearchIsDropped) {
  source_.matches = 450;
  search("report");
  source_.isHeld = true;
  model_->loadMore();
  settle();
  search("invoice");
  model_->loadMore();  // not while searching
  settle();
  EXPECT_EQ(source_.searches.size(), 3U);

  release();  // the page of "report"
  EXPECT_EQ(model_->results().size(), 200U);
  release();
  release();
  EXPECT_EQ(model_->results().size(), 200U);
  model_->loadMore();  // nothing of the earlier search stands in the way
  settle();
  release();
  EXPECT_EQ(model_->results().size(), 400U);
}

TEST_F(SearchViewModelTest, OnlyTheLatestSearchCounts) {
  source_.matches = 3;
  source_.isHeld = true;
  search("old");
  source_.matches = 5;
  search("new");
  ASSERT_EQ(source_.waiting(), 2U);
  release();
  EXPECT_TRUE(model_->isSearching());
  EXPECT_THAT(model_->results(), IsEmpty());
  EXPECT_EQ(source_.waiting(), 1U);  // nobody asks for the count of what is given up
  release();
  release();
  EXPECT_EQ(model_->results().size(), 5U);
  EXPECT_THAT(model_->recentSearches(), ElementsAre("new"));
}

TEST_F(SearchViewModelTest, WhatIsGivenUpIsStopped) {
  source_.matches = 450;
  search("report");
  source_.isHeld = true;
  model_->loadMore();
  settle();
  search("invoice");
  search("bill");
  EXPECT_FALSE(source_.searches.back().stop.stop_requested());
  model_->setQueryText("");
  ASSERT_EQ(source_.searches.size(), 4U);
  for (std::size_t i = 1; i < 4; ++i) {
    EXPECT_TRUE(source_.searches[i].stop.stop_requested()) << source_.searches[i].query.text;
  }
  while (source_.waiting() > 0) release();

  source_.isHeld = false;
  search("report");
  source_.isHeld = true;
  refresh();
  ASSERT_EQ(source_.waiting(), 1U);
  search("bill");
  EXPECT_TRUE(source_.searches.at(5).stop.stop_requested()) << "the refresh of what was there";
  while (source_.waiting() > 0) release();
}

TEST_F(SearchViewModelTest, TellsWhenThereMayBeMoreMatchesThanItKnows) {
  int signals = 0;
  QObject::connect(model_.get(), &SearchViewModel::isIncompleteChanged, [&] { ++signals; });
  source_.matches = 3;
  source_.isIncomplete = true;
  search("r:^name");
  EXPECT_TRUE(model_->isIncomplete());
  EXPECT_EQ(model_->resultCount(), 3);
  source_.isIncomplete = false;
  refresh();
  EXPECT_FALSE(model_->isIncomplete());
  source_.isIncomplete = true;
  refresh();
  EXPECT_TRUE(model_->isIncomplete());
  model_->setQueryText("");
  EXPECT_FALSE(model_->isIncomplete());
  EXPECT_EQ(signals, 4);
}

TEST_F(SearchViewModelTest, ARegularExpressionComesInOneList) {
  source_.matches = 450;
  search("r:^name");
  EXPECT_EQ(source_.searches.at(0).limit, std::numeric_limits<std::int64_t>::max());
  EXPECT_THAT(source_.counts, IsEmpty());
  EXPECT_EQ(model_->results().size(), 450U);
  EXPECT_EQ(model_->totalCount(), 450);
  EXPECT_FALSE(model_->hasMore());
}

TEST_F(SearchViewModelTest, SortingSearchesAtOnceAndTurnsRoundTheSecondTime) {
  model_->setQueryText("report");
  pass(SearchViewModel::kDebounce);
  struct Step {
    SortField field;
    bool ascending;
  };
  for (const auto& [field, ascending] :
       {Step{SortField::size, true}, Step{SortField::size, false}, Step{SortField::name, true},
        Step{SortField::relevance, true}, Step{SortField::relevance, false}}) {
    model_->updateSort(field);
    settle();
    EXPECT_EQ(source_.searches.back().query, SearchQuery::parsed("report", {}, field, ascending));
  }
  EXPECT_EQ(source_.searches.size(), 6U);
}

TEST_F(SearchViewModelTest, RemembersTheLastEightDifferentTexts) {
  for (const auto* text : {"report", "invoice", "report", " report"}) search(text);
  EXPECT_THAT(model_->recentSearches(), ElementsAre(" report", "report", "invoice"));
  start();
  EXPECT_THAT(model_->recentSearches(), ElementsAre(" report", "report", "invoice"));

  for (int i = 0; i < 10; ++i) search(std::to_string(i));
  stop();
  EXPECT_THAT(defaults_.get<Texts>(kRecent).value(),
              ElementsAre("9", "8", "7", "6", "5", "4", "3", "2"));

  defaults_.set(kRecent, std::string("no list"));
  start();
  EXPECT_THAT(model_->recentSearches(), IsEmpty());
}

TEST_F(SearchViewModelTest, AFailureKeepsTheRowsAndIsClearedByTheNextSearch) {
  source_.matches = 450;
  search("report");
  source_.failure = DatabaseError::stepFailed(/*code=*/10);
  model_->loadMore();
  settle();
  EXPECT_FALSE(model_->isLoadingMore());
  EXPECT_EQ(model_->errorMessage(), std::nullopt);

  search("invoice");
  EXPECT_EQ(model_->errorMessage(), std::string("搜索失败：") + source_.failure->what());
  EXPECT_EQ(model_->results().size(), 200U);
  EXPECT_FALSE(model_->isSearching());
  EXPECT_THAT(model_->recentSearches(), ElementsAre("report"));

  source_.failure.reset();
  search("invoice");
  EXPECT_EQ(model_->errorMessage(), std::nullopt);
  EXPECT_TRUE(model_->hasMore());

  source_.isHeld = true;  // a failure of what was given up is nobody's business
  search("old");
  model_->setQueryText("");
  source_.failure = DatabaseError::stepFailed(/*code=*/10);
  release();
  EXPECT_EQ(model_->errorMessage(), std::nullopt);
}

TEST_F(SearchViewModelTest, RemovingRowsLeavesTheRestAndItsOrder) {
  source_.matches = 5000;
  search("report");
  model_->setSelectedIDs({7, 3, 1});
  EXPECT_EQ(model_->selectedResults().front(), test::FakeSearchSource::row(1));
  model_->removeResults({0, 3, 199});
  EXPECT_EQ(model_->results().size(), 197U);
  const auto left = ids();
  EXPECT_THAT(Ids(left.begin(), left.begin() + 4), ElementsAre(1, 2, 4, 5));
  EXPECT_EQ(model_->resultCount(), 197);
  EXPECT_EQ(model_->totalCount(), 5000);
  EXPECT_TRUE(model_->hasMore());
  EXPECT_THAT(model_->selectedIDs(), ElementsAre(1, 7));
  model_->loadMore();
  settle();
  EXPECT_EQ(source_.searches.back().offset, 200);
}

TEST_F(SearchViewModelTest, RemovedRowsStayAwayUntilTheIndexHasDroppedThem) {
  source_.matches = 450;
  search("report");
  model_->removeResults({0, 3, 199});
  refresh();  // the index holds them still
  EXPECT_EQ(model_->results().size(), 197U);
  EXPECT_EQ(ids().front(), 1);
  EXPECT_EQ(model_->resultCount(), 447);
  EXPECT_EQ(model_->totalCount(), 447);

  model_->loadMore();  // begins where the source's next row is
  settle();
  EXPECT_EQ(source_.searches.back().offset, 200);
  EXPECT_EQ(model_->results().size(), 397U);
  model_->loadMore();
  settle();
  EXPECT_EQ(model_->results().size(), 447U);
  EXPECT_FALSE(model_->hasMore());

  source_.gone = {3};
  refresh();
  EXPECT_EQ(model_->results().size(), 447U);
  EXPECT_EQ(model_->resultCount(), 447) << "two of three are still held";
  source_.gone = {0, 3, 199};
  refresh();
  EXPECT_EQ(model_->resultCount(), 447);
  EXPECT_FALSE(model_->hasMore());
  source_.gone = {3, 199};
  refresh();
  EXPECT_EQ(ids().front(), 0) << "what was dropped is forgotten";
  EXPECT_EQ(model_->resultCount(), 448);
}

TEST_F(SearchViewModelTest, RemovedRowsAreLeftOutInTheTrashUntilTheyArePutBackAndForOneSearch) {
  source_.matches = 3;
  search("report");
  model_->removeResults({0, 1});
  source_.folder = "/trash/";
  refresh();
  EXPECT_THAT(ids(), ElementsAre(2));
  source_.folder = "/folder/";
  refresh();
  EXPECT_THAT(ids(), ElementsAre(0, 1, 2)) << "and was put back";

  model_->removeResults({0, 1});
  search("report");
  EXPECT_THAT(ids(), ElementsAre(0, 1, 2));
  EXPECT_EQ(model_->resultCount(), 3);
}

TEST_F(SearchViewModelTest, ARemovedRowThatOthersPushedToALaterPageStaysAwayThere) {
  source_.matches = 450;
  search("report");
  model_->removeResults({199});
  source_.firstRow = -1;  // a new row comes first
  source_.matches = 451;
  refresh();
  EXPECT_EQ(model_->results().size(), 200U);
  model_->loadMore();
  settle();
  EXPECT_EQ(model_->results().size(), 399U);
  EXPECT_EQ(model_->resultCount(), 450);
  model_->loadMore();
  settle();
  EXPECT_EQ(model_->results().size(), 450U);
  EXPECT_FALSE(model_->hasMore());
}

TEST_F(SearchViewModelTest, PagesEndAlsoWhenRowsWereRemoved) {
  source_.matches = 300;
  search("report");
  model_->removeResults({0});
  model_->loadMore();
  settle();
  EXPECT_EQ(model_->results().size(), 299U);
  EXPECT_FALSE(model_->hasMore());
}

TEST_F(SearchViewModelTest, ARefreshMakesUpForASearchThatFailed) {
  source_.matches = 450;
  search("report");
  source_.failure = DatabaseError::stepFailed(/*code=*/10);
  search("invoice");
  refresh();
  EXPECT_NE(model_->errorMessage(), std::nullopt);
  EXPECT_EQ(source_.searches.size(), 3U);

  source_.failure.reset();
  source_.matches = 7;
  std::vector<SearchViewModel::ResultsChange> changes;
  QObject::connect(model_.get(), &SearchViewModel::resultsChanged, [&](auto change) {
    EXPECT_EQ(model_->errorMessage(), std::nullopt);
    changes.push_back(change);
  });
  refresh();
  EXPECT_EQ(source_.searches.back().query.text, "invoice");
  EXPECT_EQ(model_->errorMessage(), std::nullopt);
  EXPECT_EQ(model_->results().size(), 7U);
  EXPECT_EQ(model_->resultCount(), 7);
  EXPECT_THAT(changes, ElementsAre(SearchViewModel::ResultsChange::replaced));
}

/// The index changes all the time; the answers take a while, and then none.
TEST_F(SearchViewModelTest, TheRefreshPauseFollowsTheLastAnswer) {
  source_.matches = 3;
  search("report");
  source_.isHeld = true;
  refresh();
  clock_.advance(2s);
  model_->indexChanged();
  source_.isHeld = false;
  release();
  const auto asked = source_.searches.size();
  pass(7999ms);
  EXPECT_EQ(source_.searches.size(), asked);
  source_.isHeld = true;
  pass(1ms);
  ASSERT_EQ(source_.searches.size(), asked + 1);
  model_->indexChanged();
  source_.isHeld = false;
  release();  // at once
  pass(SearchViewModel::kRefreshPause);
  EXPECT_EQ(source_.searches.size(), asked + 2);
}

TEST_F(SearchViewModelTest, TheListFollowsTheIndexQuietly) {
  int busy = 0;
  QObject::connect(model_.get(), &SearchViewModel::isSearchingChanged, [&] { ++busy; });
  source_.matches = 450;
  search("report");
  model_->loadMore();
  settle();
  model_->setSelectedIDs({0, 399});
  busy = 0;

  source_.firstRow = 1;  // the first file has gone, two have come
  source_.matches = 451;
  for (int i = 0; i < 3; ++i) model_->indexChanged();
  settle();
  EXPECT_EQ(source_.searches.size(), 2U);
  pass(SearchViewModel::kRefreshPause);
  ASSERT_EQ(source_.searches.size(), 3U);
  EXPECT_EQ(source_.searches[2].limit, 400);
  EXPECT_EQ(model_->results().size(), 400U);
  EXPECT_EQ(model_->results().front(), test::FakeSearchSource::row(1));
  EXPECT_THAT(model_->selectedIDs(), ElementsAre(399));
  EXPECT_EQ(model_->resultCount(), 451);
  EXPECT_EQ(busy, 0);
  EXPECT_THAT(model_->recentSearches(), ElementsAre("report"));

  model_->loadMore();  // goes on behind the rows that are there
  settle();
  EXPECT_EQ(model_->results().size(), 451U);
  EXPECT_FALSE(model_->hasMore());

  source_.folder = "/moved/";  // the same rows, elsewhere
  model_->indexChanged();
  pass(SearchViewModel::kRefreshPause);
  EXPECT_EQ(model_->results().front(), test::FakeSearchSource::row(1, "/moved/"));
  EXPECT_THAT(model_->selectedIDs(), ElementsAre(399));
}

TEST_F(SearchViewModelTest, WhatWasTrashedDoesNotComeBackFromTheTrash) {
  source_.matches = 10;
  search("report");
  model_->removeResults({3});
  auto trashed = test::FakeSearchSource::row(100, "/trash/");
  trashed.record.inode = test::FakeSearchSource::row(3).record.inode;
  source_.replaced = {{3, trashed}};
  for (int i = 0; i < 2; ++i) {
    refresh();
    EXPECT_EQ(model_->results().size(), 9U);
    EXPECT_EQ(model_->resultCount(), 9);
  }
  source_.replaced[3] = test::FakeSearchSource::row(3);  // the user has brought it back
  source_.replaced[3].record.id = 101;
  refresh();
  EXPECT_EQ(model_->results().size(), 10U);
}

TEST_F(SearchViewModelTest, AFileThatIsRenamedKeepsItsSelection) {
  source_.matches = 10;
  search("report");
  model_->setSelectedIDs({3, 4});
  auto renamed = test::FakeSearchSource::row(100);
  renamed.record.inode = test::FakeSearchSource::row(3).record.inode;
  auto other = renamed;  // has the number of a file that has gone, and is another
  other.record.inode = test::FakeSearchSource::row(4).record.inode;
  other.record.id = 101;
  other.record.path += "b";
  other.record.mtime = 1;
  source_.replaced = {{3, renamed}, {4, other}};
  refresh();
  EXPECT_THAT(model_->selectedIDs(), ElementsAre(100));
}

TEST_F(SearchViewModelTest, ARefreshGivesWayToTheUser) {
  source_.matches = 450;
  search("report");
  source_.isHeld = true;
  model_->indexChanged();
  pass(SearchViewModel::kRefreshPause);
  ASSERT_EQ(source_.waiting(), 1U);
  model_->indexChanged();  // after the source was asked: it needs to be asked again

  model_->loadMore();
  settle();
  source_.isHeld = false;
  while (source_.waiting() > 0) release();
  EXPECT_EQ(model_->results().size(), 400U);  // the refresh would have left 200
  pass(SearchViewModel::kRefreshPause);
  EXPECT_EQ(source_.searches.back().limit, 400);

  source_.isHeld = true;
  model_->indexChanged();
  pass(SearchViewModel::kRefreshPause);
  model_->removeResults({0});
  model_->setQueryText("");
  source_.isHeld = false;
  while (source_.waiting() > 0) release();
  pass(SearchViewModel::kRefreshPause);
  EXPECT_THAT(model_->results(), IsEmpty());
  const auto asked = source_.searches.size();
  model_->indexChanged();  // nothing to bring up to date
  pass(SearchViewModel::kRefreshPause);
  EXPECT_EQ(source_.searches.size(), asked);
}

TEST_F(SearchViewModelTest, SignalsWhatChangedOnceAllOfItHas) {
  std::map<std::string, int> seen;
  const auto count = [&](const std::string& name) { return [&seen, name] { ++seen[name]; }; };
  auto* model = model_.get();
  QObject::connect(model, &SearchViewModel::isSearchingChanged, count("searching"));
  QObject::connect(model, &SearchViewModel::totalCountChanged, count("total"));
  QObject::connect(model, &SearchViewModel::hasMoreChanged, count("more"));
  QObject::connect(model, &SearchViewModel::errorMessageChanged, count("error"));
  QObject::connect(model, &SearchViewModel::queryTextChanged, count("text"));
  QObject::connect(model, &SearchViewModel::recentSearchesChanged, count("recent"));
  std::vector<SearchViewModel::ResultsChange> changes;
  QObject::connect(model, &SearchViewModel::resultsChanged, [&](auto change) {
    changes.push_back(change);
    EXPECT_FALSE(model->isSearching());
    if (change == SearchViewModel::ResultsChange::replaced) {
      EXPECT_TRUE(model->hasMore());
      model->loadMore();
    }
  });
  source_.matches = 300;
  search("report");
  using enum SearchViewModel::ResultsChange;
  EXPECT_THAT(changes, ElementsAre(replaced, appended));
  const std::map<std::string, int> expected{
      {"searching", 2}, {"total", 1}, {"more", 2}, {"text", 1}, {"recent", 1}};
  EXPECT_EQ(seen, expected);
}

TEST_F(SearchViewModelTest, WhatIsUnderWayEndsQuietlyWithoutTheViewModel) {
  source_.matches = 450;
  search("report");
  source_.isHeld = true;
  model_->loadMore();
  search("invoice");
  model_->setQueryText("other");
  settle();
  model_.reset();
  while (source_.waiting() > 0) release();
  pass(SearchViewModel::kDebounce);
  EXPECT_EQ(source_.searches.size(), 3U);
}

TEST_F(SearchViewModelTest, StoppingWaitsForWhatIsUnderWay) {
  source_.isHeld = true;
  search("report");
  bool stopped = false;
  model_->stop([&] { stopped = true; });
  settle();
  EXPECT_FALSE(stopped);
  source_.release();
  main_.runUntil([&] { return stopped; });
  EXPECT_THAT(source_.counts, IsEmpty());
}

/// The settings are on a disk, and a long list takes long to free: neither is for the main thread.
TEST_F(SearchViewModelTest, LeavesSlowWorkToTheBackground) {
  class ThreadNotingStore final : public platform::DefaultsStore {
   public:
    [[nodiscard]] std::optional<Value> value(std::string_view /*key*/) const override { return {}; }
    void set(std::string_view /*key*/, Value /*value*/) override {
      writer = std::this_thread::get_id();
    }
    void remove(std::string_view /*key*/) override {}
    std::thread::id writer;
  } store;
  model_ = std::make_unique<SearchViewModel>(
      SearchServices{source_, clock_, store, main_.executor(), background_.executor()});
  search("report");
  stop();
  EXPECT_NE(store.writer, std::thread::id());
  EXPECT_NE(store.writer, std::this_thread::get_id());
  model_.reset();
}

}  // namespace
}  // namespace zelnor
