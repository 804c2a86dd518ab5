#pragma once

#include <QWidget>

class QLabel;

namespace zelnor::ui {

/// One line of the card that says how the index is: what is known, and its value.
class IndexStatRow final : public QWidget {
  Q_OBJECT

 public:
  IndexStatRow(const QString& label, QWidget* parent);

  void setValue(const QString& value);

 private:
  QLabel* value_;
};

}  // namespace zelnor::ui
