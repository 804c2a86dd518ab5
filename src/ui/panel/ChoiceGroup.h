#pragma once

#include <optional>

#include <QButtonGroup>
#include <QRadioButton>

namespace zelnor::ui {

/// Radio buttons of which at most one is chosen. Only what the user does is signalled
/// (`idClicked`).
class ChoiceGroup final : public QButtonGroup {
  Q_OBJECT

 public:
  using QButtonGroup::QButtonGroup;

  /// Shows the one with this identifier as chosen; without one, or if there is none such, none.
  void choose(std::optional<int> id);
};

/// A radio button that is drawn by itself and can be pressed anywhere.
class ChoiceButton : public QRadioButton {
  Q_OBJECT

 public:
  /// The label is what a screen reader says, too.
  ChoiceButton(const QString& label, QWidget* parent);

  [[nodiscard]] QString label() const { return accessibleName(); }
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  [[nodiscard]] bool hitButton(const QPoint& point) const override;
};

}  // namespace zelnor::ui
