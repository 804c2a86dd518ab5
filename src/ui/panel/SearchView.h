#pragma once

#include <functional>
#include <optional>
#include <string>

#include <QWidget>

#include "search/SearchViewModel.h"
#include "ui/panel/StatusText.h"

class QStackedWidget;

namespace zelnor {
class BookmarkViewModel;
class FileIcons;
class FileOperationService;
struct SearchBookmark;
namespace platform {
class Clipboard;
}
}  // namespace zelnor

namespace zelnor::ui {

class BookmarksSidebarView;
class EmptyStateView;
class FileOperationSheets;
class FilterPanelView;
class NoResultsView;
class ResultListView;
class SearchBarView;
class SlidingPane;
class StatusBarView;

/// What the search panel works with. Everything here outlives it.
struct SearchPanelServices {
  SearchViewModel& search;
  BookmarkViewModel& bookmarks;
  FileOperationService& files;
  platform::Clipboard& clipboard;
  FileIcons* icons = nullptr;  ///< without, rows show what category they are of
};

/// The whole content of the search panel: the search bar, filters and bookmarks where they are
/// wanted, the results or what stands in their place, and the status line.
///
/// It shows what the view models hold, tells them what the user wants, and has the file operations
/// act on what was found.
class SearchView final : public QWidget {
  Q_OBJECT

 public:
  static constexpr QSize kSize{680, 520};
  static constexpr QSize kSmallest{600, 380};

  explicit SearchView(const SearchPanelServices& services, QWidget* parent = nullptr);
  ~SearchView() override;

  [[nodiscard]] bool showsBookmarks() const { return showBookmarks_; }
  [[nodiscard]] bool showsFilters() const { return showFilters_; }
  void setShowsBookmarks(bool areShown);
  void setShowsFilters(bool areShown);

  /// Has the next key typed arrive in the search field, unless a sheet asks for something.
  void focusSearchField();

  /// Asks the user to let the program read all files; `openSettings` opens the page of the system's
  /// settings where that is done. No effect while it is asked already.
  void showPermissionGuide(std::function<void()> openSettings);

  /// What the indexer does, for the status line.
  void setIndexing(bool isIndexing, std::int64_t processedFiles, std::int64_t totalFiles);
  /// Something to know about the index, as long as nothing more important goes on; empty for
  /// nothing.
  void setNotice(const QString& notice);
  /// Something that keeps the program from working; empty for nothing.
  void setFailure(const QString& failure);

 Q_SIGNALS:
  /// The user is done with the panel.
  void closeRequested();
  void minimizeRequested();
  void settingsRequested();
  /// The user wants to see the file at this path (bytes).
  void previewRequested(const std::string& path);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void layOut();
  void listenToSearch();
  void listenToBar();
  void listenToList();
  void listenToBookmarks();
  void addShortcuts();
  void queryChanged();
  void searchingChanged();
  void choosePage();
  void showStatus();
  void limitFilters();
  void goDown();
  void confirm();
  void saveSearch();
  void applyBookmark(const SearchBookmark& bookmark);
  void handleSpaceKey();

  SearchPanelServices services_;
  SearchViewModel& search_;
  QWidget* content_;  ///< all but the sheets, which lie over it
  SearchBarView* bar_;
  FilterPanelView* filters_;
  SlidingPane* filterPane_;
  BookmarksSidebarView* bookmarks_;
  SlidingPane* bookmarkPane_;
  QStackedWidget* pages_;
  EmptyStateView* empty_;
  NoResultsView* noResults_;
  ResultListView* list_;
  StatusBarView* status_;
  FileOperationSheets* sheets_;

  bool showBookmarks_ = false;
  bool showFilters_ = false;
  std::optional<std::string> previewURL_;  ///< the path that the list last asked to preview
  StatusFacts facts_;
  std::optional<QString> failure_;
  bool isAnswered_ = false;   ///< the results belong to the query as it stands
  bool opensAnswer_ = false;  ///< the user has asked to open what will be found
};

}  // namespace zelnor::ui
