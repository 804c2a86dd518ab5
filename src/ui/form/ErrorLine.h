#pragma once

#include <QWidget>

class QLabel;

namespace zelnor::ui {

/// Why something did not work: small red lines behind a warning sign, hidden while there is
/// nothing to say.
class ErrorLine final : public QWidget {
  Q_OBJECT

 public:
  explicit ErrorLine(QWidget* parent);

  /// Empty for nothing.
  void setText(const QString& text);

 private:
  QLabel* text_;
};

}  // namespace zelnor::ui
