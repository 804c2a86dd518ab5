#include "ui/TextField.h"

#include "ui/Typography.h"

namespace zelnor::ui {

namespace {
constexpr int kFieldHeight = 26;
constexpr int kInset = 4;
}  // namespace

QLineEdit* makeTextField(const QString& title, const QString& text, QWidget* parent) {
  auto* field = new QLineEdit(text, parent);
  field->setFont(type::font(type::kBody));
  field->setAccessibleName(title);
  field->setPlaceholderText(title);
  field->setTextMargins(kInset, 0, kInset, 0);
  field->setMinimumHeight(type::scaled(kFieldHeight));
  return field;
}

}  // namespace zelnor::ui
