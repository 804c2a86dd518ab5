#pragma once

#include "ui/PlainButton.h"
#include "ui/Typography.h"

namespace zelnor::ui {

/// A text to press, in a border.
class FormButton final : public PlainButton {
  Q_OBJECT

 public:
  FormButton(const QString& title, type::Size size, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paint(QPainter& painter) override;
  [[nodiscard]] double cornerRadius() const override { return 6; }
};

}  // namespace zelnor::ui
