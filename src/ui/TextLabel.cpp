#include "ui/TextLabel.h"

#include <QPainter>

#include "ui/Palette.h"
#include "ui/Symbol.h"

namespace zelnor::ui {

namespace {

class SymbolPicture final : public QWidget {
 public:
  SymbolPicture(QLatin1String symbol, int side, const QColor& color, QWidget* parent)
      : QWidget(parent), symbol_(symbol), color_(color) {
    setFixedSize(type::scaled(side), type::scaled(side));
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    paintSymbol(painter, rect(), symbol_, color_);
  }

 private:
  QLatin1String symbol_;
  QColor color_;
};

void initialize(QLabel& label, const QFont& font, const QColor& color) {
  label.setTextFormat(Qt::PlainText);
  label.setFont(font);
  setTextColor(label, color);
}

}  // namespace

QLabel* makeText(const QString& text, type::Size size, const QColor& color, QWidget* parent,
                 QFont::Weight weight) {
  auto* label = new QLabel(parent);
  initialize(*label, type::font(size, weight), color);
  label->setText(text);
  return label;
}

void setTextColor(QWidget& text, const QColor& color) {
  QPalette colors = text.palette();
  colors.setColor(QPalette::WindowText, color);
  text.setPalette(colors);
}

QWidget* makeSymbol(QLatin1String symbol, int side, const QColor& color, QWidget* parent) {
  return new SymbolPicture(symbol, side, color, parent);
}

QWidget* makeHeroSymbol(QLatin1String symbol, QWidget* parent) {
  return makeSymbol(symbol, type::kHero, palette::kFaintText, parent);
}

QWidget* makeSeparator(Qt::Orientation orientation, QWidget* parent) {
  auto* line = new QWidget(parent);
  if (orientation == Qt::Horizontal) {
    line->setFixedHeight(1);
  } else {
    line->setFixedWidth(1);
  }
  line->setAutoFillBackground(true);
  line->setPalette(QPalette(palette::kSeparator));
  return line;
}

ElidedLabel::ElidedLabel(type::Size size, const QColor& color, QWidget* parent,
                         Qt::TextElideMode mode)
    : QLabel(parent), mode_(mode) {
  initialize(*this, type::font(size), color);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QSize ElidedLabel::minimumSizeHint() const { return {0, QLabel::minimumSizeHint().height()}; }

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  const auto shown = fontMetrics().elidedText(text(), mode_, contentsRect().width());
  setToolTip(shown == text() ? QString()
                             : QStringLiteral("<span>%1</span>").arg(text().toHtmlEscaped()));
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(contentsRect(), static_cast<int>(alignment()) | Qt::TextSingleLine, shown);
}

}  // namespace zelnor::ui
