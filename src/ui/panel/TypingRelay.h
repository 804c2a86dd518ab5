#pragma once

#include <QObject>

class QInputMethodQueryEvent;
class QWidget;

namespace zelnor::ui {

/// Lets what an input method composes while another widget has the keyboard appear in a text field,
/// as if it were composed there. The keyboard follows when the user has chosen a text: moved any
/// earlier, it would end the composition.
class TypingRelay final : public QObject {
  Q_OBJECT

 public:
  /// Belongs to `from`, which is in the same window as `field`; neither goes before the other is
  /// out of use.
  TypingRelay(QWidget& from, QWidget& field);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void answer(QInputMethodQueryEvent& query) const;

  QWidget& from_;
  QWidget& field_;
};

}  // namespace zelnor::ui
