#include "ui/list/ResultDelegate.h"

#include <QFontMetrics>
#include <QPainter>

#include "ui/Glyphs.h"
#include "ui/Palette.h"
#include "ui/list/ResultListModel.h"
#include "ui/list/ResultRowGeometry.h"

namespace zelnor::ui {

namespace {

constexpr int kNameSize = 13;
constexpr int kDetailSize = 11;
constexpr int kBadgeSize = 8;
constexpr int kIconRadius = 6;
constexpr int kHighlightRadius = 6;

QFont sized(QFont font, int pixels, QFont::Weight weight = QFont::Normal) {
  font.setPixelSize(pixels);
  font.setWeight(weight);
  return font;
}

void paintBackground(QPainter& painter, const QStyleOptionViewItem& option) {
  const bool selected = option.state.testFlag(QStyle::State_Selected);
  if (!selected && !option.state.testFlag(QStyle::State_MouseOver)) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(selected ? palette::kSelection : palette::kHover);
  painter.drawRoundedRect(option.rect.adjusted(8, 1, -8, -1), kHighlightRadius, kHighlightRadius);
}

void paintIcon(QPainter& painter, const QRect& rect, const QModelIndex& index, const QFont& font) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(index.data(ResultListModel::tintRole).value<QColor>());
  painter.drawRoundedRect(rect, kIconRadius, kIconRadius);
  const auto symbol = QRectF(rect).adjusted(6, 6, -6, -6);
  if (index.data(ResultListModel::isFolderRole).toBool()) {
    paintFolder(painter, symbol, Qt::white);
  } else if (const auto badge = index.data(ResultListModel::badgeRole).toString();
             badge.isEmpty()) {
    paintDocument(painter, symbol, Qt::white);
  } else {
    painter.setFont(sized(font, kBadgeSize, QFont::Bold));
    painter.setPen(Qt::white);
    painter.drawText(rect, Qt::AlignCenter, badge);
  }
}

/// One line of plain text that is cut where it does not fit.
void paintLine(QPainter& painter, const QRect& rect, const QString& text, const QFont& font,
               const QColor& color, Qt::TextElideMode elide, Qt::Alignment horizontal) {
  painter.setFont(font);
  painter.setPen(color);
  painter.drawText(rect, static_cast<int>(horizontal | Qt::AlignVCenter) | Qt::TextSingleLine,
                   QFontMetrics(font).elidedText(text, elide, rect.width()));
}

}  // namespace

void ResultDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const bool selected = option.state.testFlag(QStyle::State_Selected);
  const auto parts = ResultRowGeometry::of(option.rect);
  const QFont name = sized(option.font, kNameSize, selected ? QFont::DemiBold : QFont::Medium);
  const QFont detail = sized(option.font, kDetailSize);

  paintBackground(*painter, option);
  paintIcon(*painter, parts.icon, index, option.font);
  paintLine(*painter, parts.name, index.data().toString(), name,
            selected ? palette::kAccent : palette::kText, Qt::ElideMiddle, Qt::AlignLeft);
  paintLine(*painter, parts.folder, index.data(ResultListModel::folderRole).toString(), detail,
            palette::kSecondaryText, Qt::ElideMiddle, Qt::AlignLeft);
  paintLine(*painter, parts.size, index.data(ResultListModel::sizeRole).toString(), detail,
            palette::kSecondaryText, Qt::ElideRight, Qt::AlignRight);
  paintLine(*painter, parts.date, index.data(ResultListModel::dateRole).toString(), detail,
            palette::kSecondaryText, Qt::ElideRight, Qt::AlignRight);
  painter->restore();
}

QSize ResultDelegate::sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& /*index*/) const {
  return {option.rect.width(), ResultRowGeometry::kHeight};
}

}  // namespace zelnor::ui
