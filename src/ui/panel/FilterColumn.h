#pragma once

#include <QVBoxLayout>
#include <QWidget>

namespace zelnor::ui {

/// A titled column of choices.
class FilterColumn final : public QWidget {
  Q_OBJECT

 public:
  FilterColumn(const QString& title, QWidget* parent);

  void addRow(QWidget* row) { rows_->addWidget(row); }
  /// Appends something that belongs to the row above it.
  void addNote(QWidget* note, int gap);

 private:
  QVBoxLayout* rows_;
};

}  // namespace zelnor::ui
