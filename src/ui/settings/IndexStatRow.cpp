#include "ui/settings/IndexStatRow.h"

#include <QHBoxLayout>

#include "ui/Palette.h"
#include "ui/TextLabel.h"

namespace zelnor::ui {

IndexStatRow::IndexStatRow(const QString& label, QWidget* parent)
    : QWidget(parent), value_(makeText({}, type::kLabel, palette::kText, this)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(makeText(label, type::kLabel, palette::kSecondaryText, this));
  row->addStretch();
  row->addWidget(value_);
}

void IndexStatRow::setValue(const QString& value) { value_->setText(value); }

}  // namespace zelnor::ui
