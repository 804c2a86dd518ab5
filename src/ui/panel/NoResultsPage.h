#pragma once

#include <QWidget>

class QLabel;

namespace zelnor::ui {

/// What is shown when a search found nothing.
class NoResultsPage final : public QWidget {
  Q_OBJECT

 public:
  explicit NoResultsPage(QWidget* parent = nullptr);

  void setQuery(const QString& query);

 private:
  QLabel* sentence_;
};

}  // namespace zelnor::ui
