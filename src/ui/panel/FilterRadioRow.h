#pragma once

#include "ui/panel/ChoiceGroup.h"

namespace zelnor::ui {

/// One choice of a filter column: a circle and its label.
class FilterRadioRow final : public ChoiceButton {
  Q_OBJECT

 public:
  FilterRadioRow(const QString& label, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace zelnor::ui
