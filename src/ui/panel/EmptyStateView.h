#pragma once

#include <string>
#include <vector>

#include <QScrollArea>

#include "bookmarks/SearchBookmark.h"

class QVBoxLayout;

namespace zelnor::ui {

class PlainButton;

/// What is shown while nothing is searched for: recent searches and a few bookmarks, or how to
/// search.
class EmptyStateView final : public QScrollArea {
  Q_OBJECT

 public:
  static constexpr std::size_t kTopBookmarks = 5;

  explicit EmptyStateView(QWidget* parent = nullptr);

  /// Newest first, UTF-8.
  void setRecentSearches(std::vector<std::string> searches);
  /// In stored order; the first few are shown.
  void setBookmarks(const std::vector<SearchBookmark>& bookmarks);
  /// Takes the keyboard, if there is anything to choose from.
  void enter();

 Q_SIGNALS:
  void recentChosen(const std::string& query);
  void bookmarkChosen(const zelnor::SearchBookmark& bookmark);
  /// The user went up from the first entry.
  void leftUpwards();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void rebuild();
  bool goFrom(PlainButton& entry, int key);
  void addRecents(QVBoxLayout& page);
  void addBookmarks(QVBoxLayout& page);

  std::vector<std::string> recents_;
  std::vector<SearchBookmark> bookmarks_;
};

}  // namespace zelnor::ui
