#include "ui/list/TextLine.h"

#include <algorithm>

#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

namespace zelnor::ui {

namespace {
/// Letters are wider than that, but for accents, of which there may be any number.
constexpr int kNarrowestLetter = 2;  // pixels
/// Makes one line of the text; returns its width. Text is measured here once and not again when it
/// is drawn, which is what takes the time.
double lay(QTextLayout& layout) {
  QTextOption option;
  option.setTextDirection(Qt::LeftToRight);
  option.setWrapMode(QTextOption::NoWrap);
  layout.setTextOption(option);
  layout.beginLayout();
  const auto line = layout.createLine();
  layout.endLayout();
  return line.naturalTextWidth();
}

}  // namespace

TextLine::TextLine(const QFont& font)
    : font_(font), metrics_(font), height_(metrics_.height()), ascent_(metrics_.ascent()) {}

TextLine::TextLine(const QFont& font, const TextLine& other)
    : font_(font), metrics_(font), height_(other.height_), ascent_(other.ascent_) {}

void TextLine::paint(QPainter& painter, const QRect& box, const QString& text, const QColor& color,
                     Qt::AlignmentFlag side) const {
  const auto seen = withoutUnseenMiddle(text, box.width());
  QTextLayout layout(seen, font_);
  double width = lay(layout);
  if (width > box.width()) {
    layout.setText(metrics_.elidedText(seen, Qt::ElideMiddle, box.width()));
    width = lay(layout);
  }
  const double free = side == Qt::AlignRight ? std::max(box.width() - width, 0.0) : 0;
  const int base = box.top() + (box.height() - height_) / 2 + ascent_;
  painter.setPen(color);
  layout.draw(&painter, QPointF(box.left() + free, base - layout.lineAt(0).ascent()));
}

QString withoutUnseenMiddle(const QString& text, int width) {
  const qsizetype side = std::max(width, 0) / kNarrowestLetter + 1;
  if (text.size() <= 4 * side) return text;
  auto first = side;
  auto last = text.size() - side;
  if (text.at(first - 1).isHighSurrogate()) --first;
  if (text.at(last).isLowSurrogate()) ++last;
  return text.first(first) + u'…' + text.sliced(last);
}

}  // namespace zelnor::ui
