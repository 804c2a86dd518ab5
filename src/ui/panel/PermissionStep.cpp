#include "ui/panel/PermissionStep.h"

#include <QHBoxLayout>
#include <QPainter>

#include "ui/Palette.h"
#include "ui/TextLabel.h"

namespace zelnor::ui {

namespace {

constexpr int kBadge = 18;
constexpr int kGap = 10;

class Badge final : public QWidget {
 public:
  Badge(int number, QWidget* parent) : QWidget(parent), number_(QString::number(number)) {
    setFixedSize(type::scaled(kBadge), type::scaled(kBadge));
    setFont(type::font(type::kDetail, QFont::DemiBold));
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::kAccent);
    painter.drawEllipse(rect());
    painter.setPen(Qt::white);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, number_);
  }

 private:
  QString number_;
};

}  // namespace

PermissionStep::PermissionStep(int number, const QString& text, QWidget* parent) : QWidget(parent) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(kGap);
  row->addWidget(new Badge(number, this));
  row->addWidget(makeText(text, type::kBody, palette::kText, this), /*stretch=*/1);
  setAccessibleName(QStringLiteral("%1. %2").arg(number).arg(text));
}

}  // namespace zelnor::ui
