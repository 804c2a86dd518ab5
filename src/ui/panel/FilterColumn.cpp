#include "ui/panel/FilterColumn.h"

#include "ui/Palette.h"
#include "ui/TextLabel.h"

namespace zelnor::ui {

namespace {
constexpr int kRowSpacing = 8;
constexpr int kColumnMargin = 4;
}  // namespace

FilterColumn::FilterColumn(const QString& title, QWidget* parent)
    : QWidget(parent), rows_(new QVBoxLayout) {
  setAccessibleName(title);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, kColumnMargin, 0, kColumnMargin);
  all->setSpacing(0);
  rows_->setSpacing(kRowSpacing);
  rows_->addWidget(makeText(title, type::kLabel, palette::kText, this, QFont::DemiBold));
  all->addLayout(rows_);
  all->addStretch();
}

void FilterColumn::addNote(QWidget* note, int gap) {
  auto* all = static_cast<QVBoxLayout*>(layout());
  all->insertSpacing(all->count() - 1, gap);
  all->insertWidget(all->count() - 1, note);
}

}  // namespace zelnor::ui
