#pragma once

#include <optional>
#include <string>

#include <QStackedWidget>
#include <QWidget>

#include "search/SearchViewModel.h"
#include "ui/panel/StatusText.h"

namespace zelnor::ui {

class NoResultsPage;
class ResultListView;
class SearchField;
class StartPage;
class StatusLine;
class TypeChips;

/// The window: search field and file types over the results, a status line below them.
///
/// It shows what the view model holds and tells it what the user wants; opening a file is left to
/// whoever listens.
class SearchWindow final : public QWidget {
  Q_OBJECT

 public:
  /// The view model outlives the window.
  explicit SearchWindow(SearchViewModel& viewModel, QWidget* parent = nullptr);

  /// What the indexer does, for the status line.
  void setIndexing(bool isIndexing, std::int64_t processedFiles, std::int64_t totalFiles);
  /// Something to know about the index, as long as nothing more important goes on; empty for
  /// nothing.
  void setNotice(const QString& notice);
  /// Something that keeps the program from working; empty for nothing.
  void setFailure(const QString& failure);

 Q_SIGNALS:
  /// The user wants to open the file at this path (bytes).
  void openRequested(const std::string& path);
  void closed();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void layOut();
  void listenToViewModel();
  void listenToUser();
  void clear();
  void goDown();
  void queryChanged();
  void searchingChanged();
  void choosePage();
  void showStatus();

  SearchViewModel& viewModel_;
  SearchField* field_;
  TypeChips* chips_;
  QStackedWidget* pages_;
  StartPage* start_;
  NoResultsPage* noResults_;
  ResultListView* list_;
  StatusLine* status_;

  StatusFacts facts_;
  std::optional<QString> failure_;
  bool isAnswered_ = false;  ///< the results belong to the query as it stands
};

}  // namespace zelnor::ui
