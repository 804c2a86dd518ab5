#pragma once

#include "ui/Sheet.h"

class QLabel;

namespace zelnor::ui {

class ProgressLine;

/// How far something has come that takes long, with a way to end it.
class ProgressSheet final : public Sheet {
  Q_OBJECT

 public:
  ProgressSheet(const QString& title, QWidget& panel);

  void setProgress(int done, int total);
  /// It is over.
  void finish() { dismiss(); }

 Q_SIGNALS:
  void cancelled();

 private:
  ProgressLine* bar_;
  QLabel* count_;
};

}  // namespace zelnor::ui
