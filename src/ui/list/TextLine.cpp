#include "ui/list/TextLine.h"

#include <algorithm>

#include <QPainter>

namespace zelnor::ui {

namespace {
/// Letters are wider than that, but for accents, of which there may be any number.
constexpr int kNarrowestLetter = 2;  // pixels
}  // namespace

void TextLine::paint(QPainter& painter, const QRect& box, const QString& text, const QColor& color,
                     Qt::AlignmentFlag side) const {
  const auto shown =
      metrics_.elidedText(withoutUnseenMiddle(text, box.width()), Qt::ElideMiddle, box.width());
  const int free =
      side == Qt::AlignRight ? std::max(box.width() - metrics_.horizontalAdvance(shown), 0) : 0;
  const int base = box.top() + (box.height() - metrics_.height()) / 2 + metrics_.ascent();
  painter.setFont(font_);
  painter.setPen(color);
  painter.setLayoutDirection(Qt::LeftToRight);
  painter.drawText(QPoint(box.left() + free, base), shown);
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
