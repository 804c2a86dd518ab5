#pragma once

#include <QWidget>

namespace zelnor::ui {

/// One thing to do of several, with its number in a badge.
class PermissionStep final : public QWidget {
  Q_OBJECT

 public:
  PermissionStep(int number, const QString& text, QWidget* parent);
};

}  // namespace zelnor::ui
