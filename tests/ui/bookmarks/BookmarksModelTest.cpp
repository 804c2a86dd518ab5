#include <map>
#include <random>

#include <QAbstractItemModelTester>

#include "tests/ui/bookmarks/BookmarksFixture.h"

namespace zelnor::ui {
namespace {

class BookmarksModelTest : public BookmarksFixture {
 protected:
  /// All rows in a line: headings in brackets.
  static std::string line(const BookmarksModel& rows) {
    std::string line;
    for (int row = 0; row < rows.rowCount(); ++row) {
      const auto index = rows.index(row);
      const auto name = index.data().toString().toStdString();
      line += rows.categoryAt(index) != nullptr ? "[" + name + "]" : name;
    }
    return line;
  }
  [[nodiscard]] std::string expectedLine() const {
    std::string line;
    for (const auto& category : bookmarks_.categories()) {
      line += "[" + category.name + "]" + names(category.id);
    }
    return line;
  }

  void changeAnything(std::mt19937& random) {
    const auto below = [&](std::size_t end) { return end == 0 ? 0 : random() % end; };
    const auto& categories = bookmarks_.categories();
    const auto category = categories[below(categories.size())].id;
    const auto count = bookmarks_.bookmarksIn(category).size();
    const std::string letter(1, static_cast<char>('a' + below(26)));
    switch (below(8)) {
      case 0:
        return bookmarks_.addCategory(letter);
      case 1:
        return bookmarks_.renameCategory(category, letter);
      case 2:
        return bookmarks_.deleteCategory(category);
      case 3:
        if (count > 0) bookmarks_.deleteBookmark(bookmarks_.bookmarksIn(category)[below(count)].id);
        return;
      case 4:
        return bookmarks_.moveBookmarks({below(9), below(9)}, below(9));
      case 5:
        return bookmarks_.moveBookmarksInCategory(category, {below(count)}, below(count + 1));
      default:
        return add(letter, category);
    }
  }
};

TEST_F(BookmarksModelTest, RowsKeepTheirIdentityThroughAnyChange) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  BookmarksModel rows(bookmarks_);
  const QAbstractItemModelTester tester(&rows,
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  bool wasReset = false;
  QObject::connect(&rows, &QAbstractItemModel::modelReset, [&] { wasReset = true; });
  for (int i = 0; i < 500; ++i) {
    std::map<std::string, QPersistentModelIndex> before;
    for (int row = 0; row < rows.rowCount(); ++row) {
      const auto* bookmark = rows.bookmarkAt(rows.index(row));
      if (bookmark != nullptr) before[bookmark->id.text()] = rows.index(row);
    }
    changeAnything(random);
    ASSERT_EQ(line(rows), expectedLine());
    for (const auto& bookmark : bookmarks_.bookmarks()) {
      const auto known = before.find(bookmark.id.text());
      if (known == before.end()) continue;
      ASSERT_TRUE(known->second.isValid());
      ASSERT_EQ(rows.bookmarkAt(known->second)->id, bookmark.id);
    }
  }
  EXPECT_FALSE(wasReset);
}

TEST_F(BookmarksModelTest, ShowsAnIdentityThatIsThereTwiceTwice) {
  const BookmarkCategory work{.id = Uuid::random(), .name = "work"};
  SearchBookmark entry;
  entry.id = Uuid::random();
  entry.name = "a";
  entry.categoryID = work.id;
  const BookmarkLists lists{.bookmarks = {entry, entry},
                            .categories = {BookmarkCategory::uncategorized, work, work}};
  const test::TemporaryFolder folder;
  BookmarkPersistenceService files(folder.path(), main_.executor());
  files.save(lists);
  BookmarkViewModel doubled(BookmarkServices{files, main_.executor()});
  BookmarksModel rows(doubled);
  main_.runUntil([&] { return !doubled.categories().empty(); });
  EXPECT_EQ(line(rows), "[未分类][work]aa[work]aa");
  doubled.addBookmark("b", "", {}, work.id);
  EXPECT_EQ(line(rows), "[未分类][work]aab[work]aab");
  doubled.deleteBookmark(entry.id);
  const auto left = doubled.bookmarksIn(work.id).size();
  EXPECT_EQ(rows.rowCount(), static_cast<int>(3 + 2 * left));
  main_.await(files.flush());
}

TEST_F(BookmarksModelTest, SaysWhatARowIsWithoutTakingItsTextForMarkup) {
  bookmarks_.addBookmark("R&D <b>\n", "<i>", {.category = FileTypeCategory::image}, {});
  const BookmarksModel rows(bookmarks_);
  const auto heading = rows.index(0);
  const auto entry = rows.index(1);
  EXPECT_FALSE(rows.flags(heading).testFlag(Qt::ItemIsSelectable));
  EXPECT_TRUE(rows.flags(entry).testFlag(Qt::ItemIsSelectable));
  EXPECT_EQ(entry.data().toString(), QStringLiteral(u"R&D <b>␊"));
  EXPECT_EQ(entry.data(Qt::AccessibleDescriptionRole).toString(),
            QStringLiteral(u"\"<i>\" · 图片"));
  EXPECT_EQ(entry.data(Qt::ToolTipRole).toString(),
            QStringLiteral(u"<span>R&amp;D &lt;b&gt;␊<br>&quot;&lt;i&gt;&quot; · 图片</span>"));
}

}  // namespace
}  // namespace zelnor::ui
