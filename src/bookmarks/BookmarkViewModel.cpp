#include "bookmarks/BookmarkViewModel.h"

#include <stop_token>
#include <string_view>
#include <utility>

#include <QPointer>

#include "bookmarks/BookmarkPersistenceService.h"
#include "bookmarks/BookmarkServices.h"
#include "search/SearchViewModel.h"
#include "tasks/TaskGroup.h"

namespace zelnor {

namespace {

constexpr std::string_view kDefaultName = "新书签";

std::string nameOf(const std::string& name, const std::string& query) {
  if (!name.empty()) return name;
  return query.empty() ? std::string(kDefaultName) : query;
}

}  // namespace

/// What goes on off the main thread: loading once, then storing.
class BookmarkViewModel::Tasks {
 public:
  explicit Tasks(BookmarkServices services)
      : services_(std::move(services)), loading_(services_.main) {}

  void load(BookmarkViewModel& owner) {
    loading_.spawn([&persistence = services_.persistence, owner = QPointer(&owner)](
                       const std::stop_token&) { return load(persistence, owner); });
  }
  void save(const BookmarkLists& lists) const { services_.persistence.save(lists); }
  void stop(std::function<void()> stopped) {
    tasks::Task::spawn(services_.main, [this, stopped = std::move(stopped)](
                                           const std::stop_token&) { return waitForEnd(stopped); });
  }
  [[nodiscard]] Date now() const { return services_.now(); }

 private:
  static tasks::Async<void> load(const BookmarkPersistenceService& persistence,
                                 QPointer<BookmarkViewModel> owner) {
    auto lists = co_await persistence.load();
    if (owner) owner->loaded(std::move(lists));
  }

  tasks::Async<void> waitForEnd(std::function<void()> stopped) {
    co_await loading_.wait();
    co_await services_.persistence.flush();
    stopped();
  }

  BookmarkServices services_;
  tasks::TaskGroup loading_;
};

BookmarkViewModel::BookmarkViewModel(const BookmarkServices& services, QObject* parent)
    : QObject(parent), tasks_(std::make_unique<Tasks>(services)) {
  tasks_->load(*this);
}

BookmarkViewModel::~BookmarkViewModel() = default;

void BookmarkViewModel::setSelectedCategoryID(const std::optional<Uuid>& id) {
  if (selectedCategoryID_ == id) return;
  selectedCategoryID_ = id;
  Q_EMIT selectedCategoryIDChanged();
}

void BookmarkViewModel::prepareNew(const SearchViewModel& search) {
  const bool otherQuery = pendingBookmarkQuery_ != search.queryText();
  const bool otherFilter = pendingBookmarkFilter_ != search.filter();
  pendingBookmarkQuery_ = search.queryText();
  pendingBookmarkFilter_ = search.filter();
  const QPointer self(this);  // a slot may delete it
  if (otherQuery) Q_EMIT pendingBookmarkQueryChanged();
  if (otherFilter && self) Q_EMIT pendingBookmarkFilterChanged();
}

void BookmarkViewModel::addBookmark(const std::string& name, const std::string& query,
                                    const SearchFilter& filter, const Uuid& categoryID) {
  apply([bookmark = SearchBookmark{.id = Uuid::random(),
                                   .name = nameOf(name, query),
                                   .query = query,
                                   .filter = filter,
                                   .categoryID = categoryID,
                                   .createdAt = tasks_->now()}](BookmarkLists& lists) {
    lists.addBookmark(bookmark);
    return true;
  });
}

void BookmarkViewModel::deleteBookmark(const Uuid& id) {
  apply([id](BookmarkLists& lists) {
    lists.deleteBookmark(id);
    return true;
  });
}

void BookmarkViewModel::moveBookmarks(const Positions& from, std::size_t to) {
  if (!isLoaded_) return;  // there is no row yet that could have been meant
  apply([&](BookmarkLists& lists) {
    lists.moveBookmarks(from, to);
    return true;
  });
}

void BookmarkViewModel::moveBookmarksInCategory(const Uuid& categoryID, const Positions& from,
                                                std::size_t to) {
  if (!isLoaded_) return;
  apply([&](BookmarkLists& lists) { return lists.moveBookmarks(categoryID, from, to); });
}

void BookmarkViewModel::addCategory(const std::string& name) {
  apply([name](BookmarkLists& lists) {
    lists.addCategory(name);
    return true;
  });
}

void BookmarkViewModel::renameCategory(const Uuid& id, const std::string& name) {
  apply([id, name](BookmarkLists& lists) { return lists.renameCategory(id, name); });
}

void BookmarkViewModel::deleteCategory(const Uuid& id) {
  apply([id](BookmarkLists& lists) { return lists.deleteCategory(id); });
}

void BookmarkViewModel::stop(std::function<void()> stopped) { tasks_->stop(std::move(stopped)); }

void BookmarkViewModel::loaded(BookmarkLists lists) {
  isLoaded_ = true;
  bool isChanged = false;
  for (const auto& edit : std::exchange(untilLoaded_, {})) isChanged = edit(lists) || isChanged;
  if (isChanged) tasks_->save(lists);
  show(std::move(lists));
}

void BookmarkViewModel::apply(const Edit& edit) {
  if (!isLoaded_) {
    untilLoaded_.push_back(edit);
    return;
  }
  auto lists = lists_;
  if (!edit(lists)) return;
  tasks_->save(lists);
  show(std::move(lists));
}

void BookmarkViewModel::show(BookmarkLists lists) {
  const auto before = std::exchange(lists_, std::move(lists));
  const bool otherCategories = lists_.categories != before.categories;
  const QPointer self(this);  // a slot may delete it
  if (lists_.bookmarks != before.bookmarks) Q_EMIT bookmarksChanged();
  if (otherCategories && self) Q_EMIT categoriesChanged();
}

}  // namespace zelnor
