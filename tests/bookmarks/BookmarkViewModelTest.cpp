#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "bookmarks/BookmarkPersistenceService.h"
#include "bookmarks/BookmarkServices.h"
#include "bookmarks/BookmarkViewModel.h"
#include "search/SearchServices.h"
#include "search/SearchViewModel.h"
#include "tasks/ThreadPool.h"
#include "tests/search_viewmodel/FakeSearchSource.h"
#include "tests/support/MainThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/MemoryDefaultsStore.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor {
namespace {

using testing::ElementsAre;
using Move = std::tuple<BookmarkViewModel::Positions, std::size_t, std::string>;

/// Names with their numbers, in a line.
std::string line(const std::vector<SearchBookmark>& bookmarks) {
  std::string line;
  for (const auto& bookmark : bookmarks) line += bookmark.name + std::to_string(bookmark.sortOrder);
  return line;
}

class BookmarkViewModelTest : public testing::Test {
 protected:
  BookmarkViewModelTest() { restart(); }
  ~BookmarkViewModelTest() override {
    if (model_) stop(*model_);
  }

  void restart() {
    if (model_) stop(*model_);
    model_ = std::make_unique<BookmarkViewModel>(
        BookmarkServices{persistence_, main_.executor(), [] { return Date{0.5}; }});
    main_.runUntil([&] { return !model_->categories().empty(); });
  }
  template <class ViewModel>
  void stop(ViewModel& model) {
    bool stopped = false;
    model.stop([&] { stopped = true; });
    main_.runUntil([&] { return stopped; });
  }
  /// One bookmark for each letter; capital ones in `other_`.
  void add(const std::string& names) {
    for (const char name : names) {
      model_->addBookmark({name}, "", {}, name < 'a' ? other_ : Uuid());
    }
  }
  void clear() {
    while (!model_->bookmarks().empty()) model_->deleteBookmark(model_->bookmarks()[0].id);
  }
  void expectWrites(bool expected, const std::function<void()>& operation) {
    main_.await(persistence_.flush());
    std::filesystem::remove(persistence_.storageURL());
    operation();
    main_.await(persistence_.flush());
    EXPECT_EQ(std::filesystem::exists(persistence_.storageURL()), expected);
  }

  test::TemporaryFolder folder_;
  test::MainThread main_;  // outlives the threads that resume on it
  tasks::ThreadPool background_{2};
  BookmarkPersistenceService persistence_{folder_.path(), background_.executor()};
  std::unique_ptr<BookmarkViewModel> model_;
  const Uuid other_ = Uuid::random();
};

TEST_F(BookmarkViewModelTest, ABookmarkWithoutANameGoesByItsQuery) {
  const SearchFilter filter{.category = FileTypeCategory::image};
  for (const auto& [name, query, stored] :
       {std::tuple("name", "query", "name"), {"", "invoice", "invoice"}, {"", "", "新书签"}}) {
    model_->addBookmark(name, query, filter, other_);
    const auto& added = model_->bookmarks().back();
    const SearchBookmark expected{added.id, stored,    query,          filter,
                                  other_,   Date{0.5}, added.sortOrder};
    EXPECT_EQ(added, expected);
    EXPECT_NE(added.id, Uuid());
  }
  const auto before = model_->bookmarks();
  restart();
  EXPECT_EQ(model_->bookmarks(), before) << "every change is stored";
}

TEST_F(BookmarkViewModelTest, MovedRowsArriveBeforeTheOneAtTheDestination) {
  const std::vector<Move> moves{{{0}, 3, "b0c1a2d3"},
                                {{0}, 4, "b0c1d2a3"},
                                {{0, 3}, 2, "b0a1d2c3"},
                                {{2, 9}, 99, "a0b1d2c3"}};
  for (const auto& [from, to, expected] : moves) {
    clear();
    add("abcd");
    model_->moveBookmarks(from, to);
    EXPECT_EQ(line(model_->bookmarks()), expected);
  }
}

TEST_F(BookmarkViewModelTest, RowsMovedWithinACategoryArriveWhereTheyWereDropped) {
  const std::vector<Move> moves{{{0}, 2, "B0A1y2x3z4"},    {{0}, 3, "B0A1y2z3x4"},
                                {{1, 2}, 0, "y0z1x2B3A4"}, {{2}, 1, "x0B1A2z3y4"},
                                {{0}, 0, "x0B1A2y3z4"},    {{3}, 0, "x2B2A3y3z4"}};
  for (const auto& [from, to, expected] : moves) {
    clear();
    add("pqxA");
    model_->deleteBookmark(model_->bookmarks()[0].id);
    model_->deleteBookmark(model_->bookmarks()[0].id);
    add("Byz");
    ASSERT_EQ(line(model_->bookmarks()), "x2A3B2y3z4") << "stored in another order than shown";
    model_->moveBookmarksInCategory(Uuid(), from, to);
    EXPECT_EQ(line(model_->bookmarksIn(std::nullopt)), expected);
  }
  EXPECT_EQ(line(model_->bookmarksIn(other_)), "B2A3");
  expectWrites(false, [&] { model_->moveBookmarksInCategory(Uuid::random(), {0}, 0); });
}

TEST_F(BookmarkViewModelTest, CategoriesComeAndGoWithoutTheirBookmarks) {
  model_->addCategory("");
  model_->addCategory("work");
  const auto work = model_->categories()[2].id;
  EXPECT_THAT(model_->categories(), ElementsAre(BookmarkCategory::uncategorized,
                                                BookmarkCategory{model_->categories()[1].id, "", 1},
                                                BookmarkCategory{work, "work", 2}));
  model_->addBookmark("a", "", {}, work);
  model_->addBookmark("b", "", {}, Uuid());
  model_->addBookmark("c", "", {}, work);
  model_->setSelectedCategoryID(work);
  model_->renameCategory(work, "play");
  model_->renameCategory(Uuid(), "rest");
  EXPECT_EQ(line(model_->bookmarksIn(work)), "a0c2");
  model_->deleteCategory(model_->categories()[1].id);
  EXPECT_EQ(model_->categories()[1].name, "play");
  model_->deleteCategory(work);
  EXPECT_EQ(line(model_->bookmarksIn(work)), "");
  EXPECT_EQ(model_->selectedCategoryID(), work);
  restart();
  EXPECT_EQ(line(model_->bookmarksIn(Uuid())), "a0b1c2");
  EXPECT_THAT(model_->categories(), ElementsAre(BookmarkCategory{Uuid(), "rest", 0}));
  expectWrites(false, [&] { model_->deleteCategory(Uuid()); });
  expectWrites(false, [&] { model_->renameCategory(work, "other"); });
  expectWrites(true, [&] { model_->deleteCategory(work); });
  expectWrites(true, [&] { model_->deleteBookmark(work); });
  EXPECT_EQ(model_->categories().size(), 1U);
}

TEST_F(BookmarkViewModelTest, CapturesTheSearchForTheNextBookmark) {
  test::FakeSearchSource source;
  test::ManualClock clock;
  test::MemoryDefaultsStore defaults;
  SearchViewModel search({source, clock, defaults, main_.executor(), background_.executor()});
  const SearchFilter images{.category = FileTypeCategory::image};
  search.setQueryText(" typed ");
  search.setFilter(images);
  EXPECT_EQ(model_->pendingBookmarkQuery(), "");
  model_->prepareNew(search);
  search.setQueryText("");
  EXPECT_EQ(model_->pendingBookmarkQuery(), " typed ");
  EXPECT_EQ(model_->pendingBookmarkFilter(), images);
  stop(search);
}

TEST_F(BookmarkViewModelTest, SignalsWhatChangedOnceAllOfItHas) {
  std::string seen;
  auto* const model = model_.get();
  QObject::connect(model, &BookmarkViewModel::bookmarksChanged,
                   [&] { seen += "b" + std::to_string(model->categories().size()); });
  QObject::connect(model, &BookmarkViewModel::categoriesChanged, [&] { seen += "c"; });
  model_->addCategory("work");
  const auto work = model_->categories()[1].id;
  model_->addBookmark("a", "", {}, work);
  model_->deleteCategory(work);
  model_->deleteBookmark(work);
  EXPECT_EQ(seen, "cb2b1c");
}

TEST_F(BookmarkViewModelTest, LeavesTheDiskToTheBackgroundAndLosesNoChangeMadeMeanwhile) {
  add("a");
  stop(*model_);
  test::MainThread background;  // runs when told to
  BookmarkPersistenceService persistence(folder_.path(), background.executor());
  model_ = std::make_unique<BookmarkViewModel>(BookmarkServices{persistence, main_.executor()});
  add("b");
  main_.runReady();
  EXPECT_EQ(line(model_->bookmarks()), "");
  background.runReady();
  std::filesystem::remove(persistence.storageURL());
  main_.runReady();
  EXPECT_EQ(line(model_->bookmarks()), "a0b1");
  EXPECT_FALSE(std::filesystem::exists(persistence.storageURL()));
  background.runReady();
  EXPECT_TRUE(std::filesystem::exists(persistence.storageURL()));
  model_ = std::make_unique<BookmarkViewModel>(BookmarkServices{persistence, main_.executor()});
  main_.runReady();
  model_.reset();  // while it loads
  background.runReady();
  main_.runReady();
}

}  // namespace
}  // namespace zelnor
