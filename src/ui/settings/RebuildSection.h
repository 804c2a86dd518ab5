#pragma once

#include <QWidget>

class QLabel;

namespace zelnor::ui {

class ErrorLine;
class FormButton;
class ProgressLine;
struct RebuildState;

/// The part of the index page that rebuilds the index and says what came of it.
class RebuildSection final : public QWidget {
  Q_OBJECT

 public:
  explicit RebuildSection(QWidget* parent);

  void setState(const RebuildState& state);

 Q_SIGNALS:
  void rebuildRequested();

 private:
  FormButton* rebuild_;
  QLabel* files_;
  QLabel* lastIndexed_;
  QLabel* unapplied_;
  ProgressLine* progress_;
  ErrorLine* error_;
};

}  // namespace zelnor::ui
