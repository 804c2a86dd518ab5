#pragma once

#include <QVariantAnimation>

#include "ui/PlainButton.h"

namespace zelnor::ui {

/// Something that is on or off, and changes at once: a knob in a track. Its state is that of a
/// checkable button, whose `clicked` says that the user has changed it.
class Switch final : public PlainButton {
  Q_OBJECT

 public:
  Switch(const QString& title, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paint(QPainter& painter) override;
  [[nodiscard]] double cornerRadius() const override { return height() / 2.0; }

 private:
  QVariantAnimation motion_;
  double position_ = 0;  ///< of the knob, from 0 (off) to 1
};

}  // namespace zelnor::ui
