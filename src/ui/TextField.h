#pragma once

#include <QLineEdit>

namespace zelnor::ui {

/// A field for one line of text. Its title is what a screen reader says, and what stands there
/// while it is empty.
QLineEdit* makeTextField(const QString& title, const QString& text, QWidget* parent);

}  // namespace zelnor::ui
