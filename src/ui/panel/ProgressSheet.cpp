#include "ui/panel/ProgressSheet.h"

#include <QVBoxLayout>

#include "ui/DisplayText.h"
#include "ui/Palette.h"
#include "ui/PlainButton.h"
#include "ui/ProgressLine.h"
#include "ui/TextLabel.h"

namespace zelnor::ui {

namespace {
constexpr int kWidth = 260;
}  // namespace

ProgressSheet::ProgressSheet(const QString& title, QWidget& panel)
    : Sheet(title, panel),
      bar_(new ProgressLine(card())),
      count_(makeText({}, type::kDetail, palette::kSecondaryText, card())) {
  parts().addWidget(makeText(title, type::kHeadline, palette::kText, card(), QFont::DemiBold));
  bar_->setFixedWidth(type::scaled(kWidth));
  parts().addWidget(bar_);
  parts().addWidget(count_);
  addButton(QStringLiteral(u"取消"), Role::cancel, [this] { Q_EMIT cancelled(); });
}

void ProgressSheet::setProgress(int done, int total) {
  bar_->setProgress(total > 0 ? static_cast<double>(done) / total : 0.0);
  count_->setText(QStringLiteral("%1 / %2").arg(countText(done), countText(total)));
}

}  // namespace zelnor::ui
