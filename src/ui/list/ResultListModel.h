#pragma once

#include <QAbstractListModel>

#include "search/SearchViewModel.h"

namespace zelnor::ui {

/// The results of a search view model as rows of a list. Rows are read where they are, never
/// copied.
class ResultListModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  /// The name is the display role, the path the tool tip, and all that a row shows is what a screen
  /// reader says.
  enum Role : int {
    folderRole = Qt::UserRole,  ///< QString
    sizeRole,                   ///< QString; a dash for what has no size of its own
    dateRole,                   ///< QString
    recordRole,                 ///< const FileRecord*, valid until the next change of the results
  };

  /// The view model outlives the list.
  explicit ResultListModel(const SearchViewModel& results, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  void follow(SearchViewModel::ResultsChange change);
  void resize();

  const SearchViewModel& results_;
  int rows_;  ///< as announced to the views
};

}  // namespace zelnor::ui
