#include "ui/list/LoadingStrip.h"

#include <QHBoxLayout>
#include <QPainter>

#include "ui/Palette.h"
#include "ui/Spinner.h"

namespace zelnor::ui {

namespace {
constexpr int kSpace = 10;  // above and below
}

LoadingStrip::LoadingStrip(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, kSpace, 0, kSpace);
  layout->addWidget(new Spinner(this), 0, Qt::AlignCenter);
}

void LoadingStrip::paintEvent(QPaintEvent* /*event*/) {
  QPainter(this).fillRect(rect(), palette::kPanel);
}

}  // namespace zelnor::ui
