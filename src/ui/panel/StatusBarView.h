#pragma once

#include <QTimer>
#include <QWidget>

#include "search/SortField.h"
#include "ui/panel/StatusText.h"

class QLabel;

namespace zelnor::ui {

class SortButton;
class Spinner;

/// The strip at the bottom: on the left what goes on, on the right, while there are results, how
/// they are sorted.
class StatusBarView final : public QWidget {
  Q_OBJECT

 public:
  explicit StatusBarView(QWidget* parent = nullptr);

  /// A search is told of only once it takes noticeably long, so that the line does not flicker
  /// while the user types.
  void setFacts(const StatusFacts& facts);
  void setSort(SortField field, bool ascending);

 Q_SIGNALS:
  void sortChosen(zelnor::SortField field);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void showText(const StatusText& text);
  void showSortMenu();

  Spinner* spinner_;
  QLabel* label_;
  QWidget* warning_;
  SortButton* sort_;
  SortField sortField_ = SortField::relevance;
  bool sortAscending_ = true;
  StatusFacts facts_;
  QTimer patience_;
};

}  // namespace zelnor::ui
