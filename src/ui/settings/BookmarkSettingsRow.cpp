#include "ui/settings/BookmarkSettingsRow.h"

#include <QPainter>

#include "ui/Palette.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr int kSides = 8;  // of the shade, beside the text
constexpr int kBesideShade = 6;
constexpr int kAboveAndBelow = 6;
constexpr int kBetweenLines = 2;
constexpr double kRadius = 5;

int lineHeight(type::Size size) { return QFontMetrics(type::font(size)).height(); }

QString descriptionOf(const QModelIndex& index) {
  return index.data(BookmarkSettingsRow::descriptionRole).toString();
}

void paintText(QPainter& painter, const QRect& line, const QString& text, type::Size size,
               const QColor& color) {
  painter.setFont(type::font(size));
  painter.setPen(color);
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   painter.fontMetrics().elidedText(text, Qt::ElideRight, line.width()));
}

}  // namespace

void BookmarkSettingsRow::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const QRect shade = option.rect.adjusted(kBesideShade, 0, -kBesideShade, 0);
  if (option.state.testFlag(QStyle::State_Selected)) {
    painter->setPen(Qt::NoPen);
    painter->setBrush(palette::kSelection);
    painter->drawRoundedRect(shade, kRadius, kRadius);
  }
  QRect line = shade.adjusted(kSides, kAboveAndBelow, -kSides, 0);
  line.setHeight(lineHeight(type::kBody));
  paintText(*painter, line, index.data().toString(), type::kBody, palette::kText);
  line.translate(0, line.height() + kBetweenLines);
  line.setHeight(lineHeight(type::kCaption));
  paintText(*painter, line, descriptionOf(index), type::kCaption, palette::kSecondaryText);
  painter->restore();
}

QSize BookmarkSettingsRow::sizeHint(const QStyleOptionViewItem& /*option*/,
                                    const QModelIndex& index) const {
  int height = 2 * kAboveAndBelow + lineHeight(type::kBody);
  if (!descriptionOf(index).isEmpty()) height += kBetweenLines + lineHeight(type::kCaption);
  return {0, height};
}

}  // namespace zelnor::ui
