#include "ui/panel/ProgressSheet.h"

#include <QPainter>
#include <QVBoxLayout>

#include "ui/DisplayText.h"
#include "ui/Palette.h"
#include "ui/PlainButton.h"
#include "ui/TextLabel.h"

namespace zelnor::ui {

namespace {
constexpr int kBarWidth = 260;
constexpr int kBarHeight = 6;
}  // namespace

class ProgressSheet::Bar final : public QWidget {
 public:
  explicit Bar(QWidget* parent) : QWidget(parent) {
    setFixedSize(type::scaled(kBarWidth), kBarHeight);
  }
  void set(double part) {
    part_ = part;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::kChip);
    constexpr double kRadius = kBarHeight / 2.0;
    painter.drawRoundedRect(rect(), kRadius, kRadius);
    painter.setBrush(palette::kAccent);
    painter.drawRoundedRect(QRectF(0, 0, std::max(width() * part_, kBarHeight * 1.0), kBarHeight),
                            kRadius, kRadius);
  }

 private:
  double part_ = 0;
};

ProgressSheet::ProgressSheet(const QString& title, QWidget& panel)
    : Sheet(title, panel),
      bar_(new Bar(card())),
      count_(makeText({}, type::kDetail, palette::kSecondaryText, card())) {
  parts().addWidget(makeText(title, type::kHeadline, palette::kText, card(), QFont::DemiBold));
  parts().addWidget(bar_);
  parts().addWidget(count_);
  addButton(QStringLiteral(u"取消"), Role::cancel, [this] { Q_EMIT cancelled(); });
}

void ProgressSheet::setProgress(int done, int total) {
  bar_->set(total > 0 ? static_cast<double>(done) / total : 0);
  count_->setText(QStringLiteral("%1 / %2").arg(countText(done), countText(total)));
}

}  // namespace zelnor::ui
