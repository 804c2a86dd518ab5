#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "bookmarks/BookmarkPersistenceService.h"
#include "tests/support/MainThread.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor {
namespace {

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

const BookmarkLists kFirstRun{.bookmarks = {}, .categories = {BookmarkCategory::uncategorized}};

const BookmarkLists kLists{
    .bookmarks = {{.id = Uuid::parse("11111111-2222-4333-8444-55555555555a").value(),
                   .name = "报告 \"1\"/\n",
                   .query = "r:^a\\.b",
                   .filter = {.category = FileTypeCategory::document, .customToDate = Date{-0.5}},
                   .categoryID = Uuid(),
                   .createdAt = Date{782'345'678.1234567},
                   .sortOrder = -7}},
    .categories = {{.id = Uuid::parse("ABCDEF01-2345-4789-8ABC-DEF012345678").value(),
                    .name = "work",
                    .sortOrder = 1}}};

const std::string kBookmarksText =
    R"([{"id":"11111111-2222-4333-8444-55555555555A","name":"报告 \"1\"/\n","query":"r:^a\\.b",)"
    R"("filter":{"category":"document","sizePreset":"any","datePreset":"any","customToDate":-0.5},)"
    R"("categoryID":"00000000-0000-0000-0000-000000000000","createdAt":782345678.1234567,)"
    R"("sortOrder":-7}])";
const std::string kCategoriesText =
    R"([{"id":"ABCDEF01-2345-4789-8ABC-DEF012345678","name":"work","sortOrder":1}])";

class BookmarkFiles : public testing::Test {
 protected:
  /// Loads as a new start of the program would.
  BookmarkLists load() {
    service_ = std::make_unique<BookmarkPersistenceService>(folder_, main_.executor());
    return main_.await(service_->load());
  }
  void save(const BookmarkLists& lists) {
    service_->save(lists);
    main_.await(service_->flush());
  }

  test::TemporaryFolder outer_;
  const std::string folder_ = outer_ / "data/Zelnor";
  const std::string bookmarks_ = folder_ + "/bookmarks.json";
  const std::string categories_ = folder_ + "/categories.json";
  test::MainThread main_;
  std::unique_ptr<BookmarkPersistenceService> service_;
};

TEST_F(BookmarkFiles, HoldTheListsByteForByteForTheirOwnerAlone) {
  EXPECT_EQ(load(), kFirstRun);
  EXPECT_FALSE(std::filesystem::exists(folder_)) << "loading creates nothing";
  save(kLists);
  EXPECT_EQ(contentOf(bookmarks_), kBookmarksText);
  EXPECT_EQ(contentOf(categories_), kCategoriesText);
  for (const auto& path : {bookmarks_, categories_}) {
    struct stat status{};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U) << path;
  }
  EXPECT_EQ(load(), kLists);
  save({});
  EXPECT_EQ(contentOf(bookmarks_) + contentOf(categories_), "[][]");
  EXPECT_EQ(load(), kFirstRun);
}

TEST_F(BookmarkFiles, OneDamagedEntryEmptiesTheListAndTheFirstChangeKeepsACopy) {
  const auto with = [](const std::string& part, const std::string& instead) {
    auto text = kBookmarksText;
    return text.replace(text.find(part), part.size(), instead);
  };
  int number = 0;
  for (const auto& damaged :
       {std::string(), kBookmarksText.substr(0, 99), with(R"(,"sortOrder":-7)", ""),
        with("-7", "7.5"), with("-7", "9223372036854775808"), with("1-2222", "12222"),
        with("}]", "},1]"), with("782345678.1234567", R"("1")"), with("document", "documents"),
        with("报", "\xe6")}) {
    outer_.file("data/Zelnor/bookmarks.json", damaged);
    outer_.file("data/Zelnor/categories.json", "[" + damaged);
    EXPECT_EQ(load(), kFirstRun) << damaged;
    EXPECT_EQ(contentOf(bookmarks_), damaged) << "loading changes nothing";
    save(kLists);
    save(kLists);
    const auto aside = ".damaged-" + std::to_string(++number);
    EXPECT_EQ(contentOf(bookmarks_ + aside), damaged);
    EXPECT_EQ(contentOf(categories_ + aside), "[" + damaged);
    EXPECT_EQ(load(), kLists);
  }
  EXPECT_FALSE(std::filesystem::exists(bookmarks_ + ".damaged-" + std::to_string(number + 1)));
}

/// A program that changes bookmarks all the time is killed again and again.
TEST_F(BookmarkFiles, LoseNothingThatWasStoredToAKill) {
  const auto change = [this](int acknowledge) {
    auto lists = load();
    do {
      lists.addBookmark(kLists.bookmarks[0]);
      save(lists);
    } while (::write(acknowledge, "", 1) == 1);
    ::_exit(1);
  };
  std::size_t stored = 0;
  for (int round = 0; round < 10; ++round) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    const auto child = ::fork();
    if (child == 0) change(pipe[1]);
    ::close(pipe[1]);
    char byte = 0;
    for (int i = 0; i < 3 + round && ::read(pipe[0], &byte, 1) == 1; ++i) ++stored;
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(pipe[0]);
    const auto found = load().bookmarks.size();
    ASSERT_GE(found, std::exchange(stored, found));
  }
  EXPECT_GE(stored, 75U);
}

}  // namespace
}  // namespace zelnor
