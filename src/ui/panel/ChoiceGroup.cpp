#include "ui/panel/ChoiceGroup.h"

namespace zelnor::ui {

void ChoiceGroup::choose(std::optional<int> id) {
  auto* const chosen = id ? button(*id) : nullptr;
  setExclusive(chosen != nullptr);
  if (chosen != nullptr) {
    chosen->setChecked(true);
  } else if (auto* checked = checkedButton()) {
    checked->setChecked(false);
  }
}

ChoiceButton::ChoiceButton(const QString& label, QWidget* parent) : QRadioButton(parent) {
  setAccessibleName(label);
  setCursor(Qt::PointingHandCursor);
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
}

bool ChoiceButton::hitButton(const QPoint& point) const { return rect().contains(point); }

}  // namespace zelnor::ui
