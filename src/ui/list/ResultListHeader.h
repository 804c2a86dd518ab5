#pragma once

#include <QWidget>

#include "search/SortField.h"

namespace zelnor {
class SearchViewModel;
}

namespace zelnor::ui {

/// The titles of the columns; each is a button that sorts by it.
class ResultListHeader final : public QWidget {
  Q_OBJECT

 public:
  /// The view model outlives the header.
  ResultListHeader(const SearchViewModel& viewModel, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  void sortChosen(zelnor::SortField field);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  class Cell;

  Cell* addCell(const QString& title, SortField field, Qt::AlignmentFlag side);
  void placeCells();
  void showSorting();

  const SearchViewModel& viewModel_;
  Cell* name_;
  Cell* location_;
  Cell* size_;
  Cell* date_;
};

}  // namespace zelnor::ui
