#include "ui/form/ErrorLine.h"

#include <QHBoxLayout>

#include "ui/Palette.h"
#include "ui/TextLabel.h"

namespace zelnor::ui {

namespace {
constexpr int kSymbol = 12;
constexpr int kGap = 5;
}  // namespace

ErrorLine::ErrorLine(QWidget* parent)
    : QWidget(parent), text_(makeText({}, type::kCaption, palette::kRed, this)) {
  text_->setWordWrap(true);
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(kGap);
  line->addWidget(
      makeSymbol(QLatin1String("exclamationmark.triangle"), kSymbol, palette::kRed, this), 0,
      Qt::AlignTop);
  line->addWidget(text_, /*stretch=*/1);
  hide();
}

void ErrorLine::setText(const QString& text) {
  text_->setText(text);
  setVisible(!text.isEmpty());
}

}  // namespace zelnor::ui
