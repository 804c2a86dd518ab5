#pragma once

#include "ui/Sheet.h"

namespace zelnor::ui {

/// A question or a warning over the panel. Texts are shown as they are.
class Alert final : public Sheet {
  Q_OBJECT

 public:
  /// `isWarning`: something has gone wrong.
  Alert(const QString& title, const QString& message, bool isWarning, QWidget& panel);

  using Sheet::addButton;
};

}  // namespace zelnor::ui
