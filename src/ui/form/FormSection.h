#pragma once

#include <QWidget>

class QVBoxLayout;

namespace zelnor::ui {

/// A heading, and below it a card with rows that lines set apart.
class FormSection final : public QWidget {
  Q_OBJECT

 public:
  /// Without a title there is only the card.
  FormSection(const QString& title, QWidget* parent);

  /// Appends a row, which takes `content`.
  void addRow(QWidget* content);
  /// A row that is called `label`, with `control` at its end.
  void addRow(const QString& label, QWidget* control);
  /// A row of several parts side by side.
  void addRow(QLayout* parts);
  /// Takes all rows away.
  void clear();

  [[nodiscard]] QWidget* card() { return card_; }

 private:
  QWidget* card_;
  QVBoxLayout* rows_;
};

}  // namespace zelnor::ui
