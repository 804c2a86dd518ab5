#pragma once

#include <QScrollArea>

class QLabel;

namespace zelnor::ui {

/// Says that nothing was found, and what else to try. Scrolls where there is no room for that.
class NoResultsView final : public QScrollArea {
  Q_OBJECT

 public:
  explicit NoResultsView(QWidget* parent = nullptr);

  void setQuery(const QString& query);

 private:
  QLabel* sentence_;
};

}  // namespace zelnor::ui
