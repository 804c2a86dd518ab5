#pragma once

#include <cstdint>

#include "ui/PlainButton.h"
#include "ui/Typography.h"

namespace zelnor::ui {

/// A text to press, in a border or plain.
class FormButton final : public PlainButton {
  Q_OBJECT

 public:
  enum class Look : std::uint8_t { bordered, plain };

  FormButton(const QString& title, type::Size size, QWidget* parent, Look look = Look::bordered);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paint(QPainter& painter) override;
  [[nodiscard]] double cornerRadius() const override { return 6; }

 private:
  void paintBorder(QPainter& painter);
  [[nodiscard]] QColor textColor() const;

  Look look_;
};

}  // namespace zelnor::ui
