#pragma once

#include <QWidget>

class QLabel;

namespace zelnor::ui {

/// Says that nothing was found, and what else to try.
class NoResultsView final : public QWidget {
  Q_OBJECT

 public:
  explicit NoResultsView(QWidget* parent = nullptr);

  void setQuery(const QString& query);

 private:
  QLabel* sentence_;
};

}  // namespace zelnor::ui
