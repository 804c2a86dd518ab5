#include "ui/bookmarks/BookmarksModel.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <unordered_map>
#include <utility>

#include "bookmarks/BookmarkViewModel.h"
#include "search/Hash.h"
#include "ui/DisplayText.h"

namespace zelnor::ui {

namespace {

/// Tool tips take what looks like markup for markup.
QString toolTip(const SearchBookmark& bookmark) {
  return QStringLiteral(u"<span>%1<br>%2</span>")
      .arg(displayText(bookmark.name).toHtmlEscaped(),
           displayText(bookmark.displayDescription()).toHtmlEscaped());
}

QVariant headingData(const BookmarkCategory& category, int role) {
  switch (role) {
    case Qt::DisplayRole:
      return displayText(category.name);
    case Qt::AccessibleDescriptionRole:
      return QStringLiteral(u"分类");
    case Qt::ToolTipRole:
      return QStringLiteral(u"<span>%1</span>").arg(displayText(category.name).toHtmlEscaped());
    case BookmarksModel::isHeadingRole:
      return true;
    case BookmarksModel::hasMenuRole:
      return !category.isUncategorized();
    default:
      return {};
  }
}

QVariant bookmarkData(const SearchBookmark& bookmark, int role) {
  switch (role) {
    case Qt::DisplayRole:
      return displayText(bookmark.name);
    case Qt::AccessibleDescriptionRole:
    case BookmarksModel::descriptionRole:
      return displayText(bookmark.displayDescription());
    case Qt::ToolTipRole:
      return toolTip(bookmark);
    case BookmarksModel::isHeadingRole:
    case BookmarksModel::hasMenuRole:
      return false;
    default:
      return {};
  }
}

}  // namespace

/// Which row each identity has in a list.
class BookmarksModel::Places {
 public:
  explicit Places(const Rows& rows) {
    places_.reserve(rows.size());
    for (const auto& row : rows) places_.emplace(row.identity, places_.size());
  }
  [[nodiscard]] bool contains(const Row& row) const { return places_.contains(row.identity); }
  [[nodiscard]] std::size_t of(const Row& row) const { return places_.at(row.identity); }

 private:
  struct HashOfIdentity {
    std::size_t operator()(const Identity& identity) const {
      return hashOf(identity.isHeading, identity.id, identity.occurrence);
    }
  };
  std::unordered_map<Identity, std::size_t, HashOfIdentity> places_;
};

BookmarksModel::BookmarksModel(BookmarkViewModel& bookmarks, QObject* parent)
    : QAbstractListModel(parent), bookmarks_(bookmarks), rows_(rowsOf(bookmarks)) {
  connect(&bookmarks, &BookmarkViewModel::bookmarksChanged, this, &BookmarksModel::follow);
  connect(&bookmarks, &BookmarkViewModel::categoriesChanged, this, &BookmarksModel::follow);
}

BookmarksModel::Rows BookmarksModel::rowsOf(const BookmarkViewModel& bookmarks) {
  Rows rows;
  std::unordered_map<Uuid, int> headings;
  std::unordered_map<Uuid, int> entries;
  for (const auto& category : bookmarks.categories()) {
    rows.push_back(
        {{.isHeading = true, .id = category.id, .occurrence = headings[category.id]++}, category});
    for (auto& bookmark : bookmarks.bookmarksIn(category.id)) {
      const auto id = bookmark.id;
      rows.push_back({{.id = id, .occurrence = entries[id]++}, std::move(bookmark)});
    }
  }
  return rows;
}

int BookmarksModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant BookmarksModel::data(const QModelIndex& index, int role) const {
  if (const auto* category = categoryAt(index)) return headingData(*category, role);
  if (const auto* bookmark = bookmarkAt(index)) return bookmarkData(*bookmark, role);
  return {};
}

Qt::ItemFlags BookmarksModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
  return bookmarkAt(index) != nullptr ? flags | Qt::ItemIsSelectable : flags;
}

template <class T>
const T* BookmarksModel::contentAt(const QModelIndex& index) const {
  const auto row = static_cast<std::size_t>(index.row());
  const bool isRow = index.isValid() && row < rows_.size();
  return isRow ? std::get_if<T>(&rows_[row].content) : nullptr;
}

const SearchBookmark* BookmarksModel::bookmarkAt(const QModelIndex& index) const {
  return contentAt<SearchBookmark>(index);
}

const BookmarkCategory* BookmarksModel::categoryAt(const QModelIndex& index) const {
  return contentAt<BookmarkCategory>(index);
}

bool BookmarksModel::isHeading(int row) const {
  return rows_.at(static_cast<std::size_t>(row)).identity.isHeading;
}

BookmarksModel::Section BookmarksModel::sectionOf(int row) const {
  int heading = row;
  while (!isHeading(heading)) --heading;
  int end = heading + 1;
  while (end < rowCount() && !isHeading(end)) ++end;
  return {.category = rows_[static_cast<std::size_t>(heading)].identity.id,
          .first = heading + 1,
          .count = end - heading - 1};
}

void BookmarksModel::moveBookmark(int row, int before) {
  if (bookmarkAt(index(row)) == nullptr) return;
  const auto section = sectionOf(row);
  if (before < section.first || before > section.end()) return;
  if (before == row || before == row + 1) return;
  const auto position = [&](int at) { return static_cast<std::size_t>(at - section.first); };
  bookmarks_.moveBookmarksInCategory(section.category, {position(row)}, position(before));
}

/// In steps that views understand: a reset would lose their place.
void BookmarksModel::follow() {
  auto wanted = rowsOf(bookmarks_);
  const Places places(wanted);
  removeOthers(places);
  reorder(places);
  insertMissing(wanted);
  replaceContents(std::move(wanted));
}

void BookmarksModel::removeOthers(const Places& wanted) {
  const auto goes = [&](const Row& row) { return !wanted.contains(row); };
  for (auto end = rows_.end(); end != rows_.begin();) {
    const auto last = std::find_if(std::reverse_iterator(end), rows_.rend(), goes);
    const auto stays = std::find_if_not(last, rows_.rend(), goes);
    if (last == stays) return;
    const auto first = static_cast<int>(std::distance(rows_.begin(), stays.base()));
    beginRemoveRows({}, first, first + static_cast<int>(std::distance(last, stays)) - 1);
    end = rows_.erase(stays.base(), last.base());
    endRemoveRows();
  }
}

void BookmarksModel::reorder(const Places& wanted) {
  std::vector<std::size_t> order(rows_.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::sort(order, {}, [&](std::size_t row) { return wanted.of(rows_[row]); });
  if (std::ranges::is_sorted(order)) return;

  Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
  Rows ordered;
  std::vector<int> newRows(rows_.size());
  for (const auto row : order) {
    newRows[row] = static_cast<int>(ordered.size());
    ordered.push_back(std::move(rows_[row]));
  }
  rows_ = std::move(ordered);
  const auto before = persistentIndexList();
  QModelIndexList after;
  for (const auto& row : before) {
    after.append(index(newRows[static_cast<std::size_t>(row.row())]));
  }
  changePersistentIndexList(before, after);
  Q_EMIT layoutChanged({}, VerticalSortHint);
}

void BookmarksModel::insertMissing(const Rows& wanted) {
  const auto isThere = [&](std::size_t row, std::size_t as) {
    return row < rows_.size() && rows_[row].identity == wanted[as].identity;
  };
  for (std::size_t first = 0; first < wanted.size(); ++first) {
    auto end = first;
    while (end < wanted.size() && !isThere(first, end)) ++end;
    if (end == first) continue;
    const auto at = [](const auto& rows, std::size_t row) {
      return rows.begin() + static_cast<std::ptrdiff_t>(row);
    };
    beginInsertRows({}, static_cast<int>(first), static_cast<int>(end) - 1);
    rows_.insert(at(rows_, first), at(wanted, first), at(wanted, end));
    endInsertRows();
    first = end - 1;
  }
}

void BookmarksModel::replaceContents(Rows wanted) {
  const auto [first, other] = std::ranges::mismatch(rows_, wanted);
  if (first == rows_.end()) return;
  const auto row = static_cast<int>(std::distance(rows_.begin(), first));
  rows_ = std::move(wanted);
  Q_EMIT dataChanged(index(row), index(rowCount() - 1));
}

}  // namespace zelnor::ui
