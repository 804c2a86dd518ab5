#pragma once

#include <string>
#include <vector>

#include <QPointer>
#include <QWidget>

#include "search/SearchViewModel.h"

namespace zelnor {
class FileIcons;
}

namespace zelnor::ui {

class LoadingStrip;
class Menu;
class ResultRows;

/// The table of results: a header to sort by over the rows, with a menu for each row, the question
/// before files go to the trash, and the sheet for a new name. Does nothing to files itself: says
/// what the user wants.
///
/// What the signals carry are copies of rows as they were when the user decided: the list may have
/// changed since.
class ResultListView final : public QWidget {
  Q_OBJECT

 public:
  /// `icons` may be nullptr. Sheets and alerts are put over `panel`. All of them, and the view
  /// model, outlive the view.
  ResultListView(SearchViewModel& viewModel, FileIcons* icons, QWidget& panel, QWidget* parent);

  /// Takes the keyboard, with a row to start from.
  void enter();
  /// Asks to open the selected row, or the first where none is selected.
  void openSelectedOrFirst();

 Q_SIGNALS:
  void sortChosen(zelnor::SortField field);
  void openRequested(const zelnor::SearchResult& result);
  void previewRequested(const zelnor::SearchResult& result);
  /// The user has confirmed it.
  void deleteRequested(const std::vector<zelnor::SearchResult>& results);
  void revealRequested(const zelnor::SearchResult& result);
  void copyFileRequested(const std::vector<zelnor::SearchResult>& results);
  void copyPathRequested(const std::vector<zelnor::SearchResult>& results);
  /// `newName` is in bytes, exactly as typed.
  void renameRequested(const zelnor::SearchResult& result, const std::string& newName);
  /// The user went up from the first row.
  void leftUpwards();
  /// The user went on typing.
  void typed(const QString& text);

 private:
  void openMenu(const SearchResult& result, const QPoint& at);
  [[nodiscard]] std::vector<SearchResult> selectedWith(const SearchResult& result) const;
  void askToTrash(const std::vector<SearchResult>& results);
  void askForName(const SearchResult& result);
  void showLoading();

  SearchViewModel& viewModel_;
  QWidget& panel_;
  ResultRows* rows_;
  LoadingStrip* loading_;
  QPointer<Menu> menu_;
};

}  // namespace zelnor::ui
