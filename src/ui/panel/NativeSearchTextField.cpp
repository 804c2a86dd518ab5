#include "ui/panel/NativeSearchTextField.h"

#include <chrono>

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QTimer>

#include "ui/Palette.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {
/// Some window systems give a new window the keyboard only after it has been shown.
constexpr std::chrono::milliseconds kUntilFocus{50};
}  // namespace

NativeSearchTextField::NativeSearchTextField(const QString& placeholder, QWidget* parent)
    : QLineEdit(parent) {
  setPlaceholderText(placeholder);
  setAccessibleName(placeholder);
  setFrame(false);
  setFont(type::font(type::kQuery));
  QPalette colors = palette();
  colors.setColor(QPalette::Base, Qt::transparent);
  colors.setColor(QPalette::Text, palette::kText);
  setPalette(colors);
  setAttribute(Qt::WA_InputMethodEnabled);
  // A new text takes the place of what is being composed, too.
  connect(this, &QLineEdit::textChanged, this, [this] { isComposing_ = false; });
}

void NativeSearchTextField::setBoundText(const QString& text) {
  if (text != this->text()) setText(text);
}

void NativeSearchTextField::type(const QString& text) {
  setFocus();
  insert(text);
  Q_EMIT textEdited(this->text());
}

/// What an input method lets through while it composes is not for the panel all the same.
void NativeSearchTextField::keyPressEvent(QKeyEvent* event) {
  if (isComposing_) return event->accept();
  switch (event->key()) {
    case Qt::Key_Down:
      Q_EMIT leftDownwards();
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Q_EMIT confirmed();
      return;
    default:
      QLineEdit::keyPressEvent(event);
  }
}

void NativeSearchTextField::inputMethodEvent(QInputMethodEvent* event) {
  QLineEdit::inputMethodEvent(event);
  isComposing_ = !event->preeditString().isEmpty();
}

void NativeSearchTextField::showEvent(QShowEvent* event) {
  QLineEdit::showEvent(event);
  QTimer::singleShot(kUntilFocus, this, [this] {
    if (isVisible() && window()->focusWidget() == nullptr) setFocus();
  });
}

}  // namespace zelnor::ui
