#include "ui/list/TextLine.h"

#include <algorithm>

#include <QPainter>

namespace zelnor::ui {

namespace {
/// Letters are wider than that, but for accents, of which there may be any number.
constexpr int kNarrowestLetter = 2;  // pixels
}  // namespace

TextLine::TextLine(const QFont& font)
    : font_(font), metrics_(font), height_(metrics_.height()), ascent_(metrics_.ascent()) {}

TextLine::TextLine(const QFont& font, const TextLine& other)
    : font_(font), metrics_(font), height_(other.height_), ascent_(other.ascent_) {}

void TextLine::paint(QPainter& painter, const QRect& box, const QString& text, const QColor& color,
                     Qt::AlignmentFlag side) const {
  const auto shown =
      metrics_.elidedText(withoutUnseenMiddle(text, box.width()), Qt::ElideMiddle, box.width());
  const int free =
      side == Qt::AlignRight ? std::max(box.width() - metrics_.horizontalAdvance(shown), 0) : 0;
  const int base = box.top() + (box.height() - height_) / 2 + ascent_;
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
