#pragma once

#include <QWidget>

class QLabel;

namespace zelnor::ui {

class ErrorLine;
class FormButton;
class IndexStatRow;
class ProgressLine;
struct RebuildState;

/// How the index is, at a glance.
class IndexStatusCard final : public QWidget {
  Q_OBJECT

 public:
  explicit IndexStatusCard(QWidget* parent);

  void setState(const RebuildState& state);

 Q_SIGNALS:
  void rebuildRequested();

 private:
  class Dot;

  Dot* dot_;
  QLabel* state_;
  FormButton* rebuild_;
  IndexStatRow* files_;
  IndexStatRow* updated_;
  QLabel* followed_;
  ProgressLine* progress_;
  ErrorLine* error_;
};

}  // namespace zelnor::ui
