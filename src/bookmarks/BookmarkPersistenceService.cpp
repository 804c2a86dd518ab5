#include "bookmarks/BookmarkPersistenceService.h"

#include <exception>
#include <utility>

#include <asio/post.hpp>
#include <nlohmann/json.hpp>

#include "bookmarks/BookmarkJson.h"
#include "platform/AtomicFile.h"
#include "platform/UserFolders.h"

namespace zelnor {

namespace {

using Json = nlohmann::ordered_json;

constexpr auto kBookmarksName = "/bookmarks.json";
constexpr auto kCategoriesName = "/categories.json";

/// One file that holds a list of records as a JSON array.
template <class Record>
class StoredList {
 public:
  explicit StoredList(std::string path) : path_(std::move(path)) {}

  std::vector<Record> load() {
    isDamaged_ = false;
    try {
      if (const auto text = platform::readFile(path_)) return decoded(*text);
    } catch (const std::exception&) {
      isDamaged_ = true;
    }
    return {};
  }

  void save(const std::vector<Record>& records) {
    try {
      const auto text = Json(records).dump();
      if (isDamaged_) platform::setAside(path_);
      isDamaged_ = false;
      platform::replaceFile(path_, text);
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the file is as it was
      // A full disk, no permission, a text that is not UTF-8: perhaps the next change succeeds.
    }
  }

 private:
  static std::vector<Record> decoded(const std::string& text) {
    return Json::parse(text).get<std::vector<Record>>();
  }

  std::string path_;
  bool isDamaged_ = false;
};

}  // namespace

/// Both files. Used on the actor only.
class BookmarkPersistenceService::Files {
 public:
  explicit Files(const std::string& folder)
      : folder_(folder),
        bookmarks_(folder + kBookmarksName),
        categories_(folder + kCategoriesName) {}

  BookmarkLists load() {
    BookmarkLists lists{.bookmarks = bookmarks_.load(), .categories = categories_.load()};
    if (lists.categories.empty()) lists.categories = {BookmarkCategory::uncategorized};
    return lists;
  }

  void save(const BookmarkLists& lists) {
    try {
      platform::createPrivateFolder(folder_);
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): writing fails too, quietly
    }
    // In this order a crash in between leaves no bookmark in a category that has just been deleted.
    bookmarks_.save(lists.bookmarks);
    categories_.save(lists.categories);
  }

 private:
  std::string folder_;
  StoredList<SearchBookmark> bookmarks_;
  StoredList<BookmarkCategory> categories_;
};

BookmarkPersistenceService::BookmarkPersistenceService(const std::string& folder,
                                                       const tasks::Executor& background)
    : Actor(background),
      storageURL_(folder + kBookmarksName),
      files_(std::make_shared<Files>(folder)) {}

tasks::Async<BookmarkLists> BookmarkPersistenceService::load() const {
  return onActor([files = files_] { return files->load(); });
}

void BookmarkPersistenceService::save(BookmarkLists lists) const {
  asio::post(strand(), [files = files_, lists = std::move(lists)] { files->save(lists); });
}

tasks::Async<void> BookmarkPersistenceService::flush() const {
  return onActor([] {});
}

}  // namespace zelnor
