#pragma once

#include "ui/panel/ChoiceGroup.h"

namespace zelnor::ui {

/// A file type to choose, as a pill.
class TypeChip final : public ChoiceButton {
  Q_OBJECT

 public:
  TypeChip(const QString& label, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace zelnor::ui
