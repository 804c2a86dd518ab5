#pragma once

#include <QTimer>
#include <QWidget>

#include "search/SortField.h"
#include "ui/panel/StatusText.h"

class QLabel;
class QToolButton;

namespace zelnor::ui {

class Spinner;

/// The strip at the bottom: on the left what goes on, on the right, while there are results, how
/// they are sorted.
class StatusLine final : public QWidget {
  Q_OBJECT

 public:
  explicit StatusLine(QWidget* parent = nullptr);

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

  Spinner* spinner_;
  QLabel* label_;
  QToolButton* sort_;
  StatusFacts facts_;
  QTimer patience_;
};

}  // namespace zelnor::ui
