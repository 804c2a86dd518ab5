#include "ui/bookmarks/BookmarkDelegate.h"

#include <QAbstractItemView>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "ui/Focus.h"
#include "ui/Palette.h"
#include "ui/Symbol.h"
#include "ui/Typography.h"
#include "ui/bookmarks/BookmarkRowGeometry.h"
#include "ui/bookmarks/BookmarksModel.h"

namespace zelnor::ui {

namespace {

constexpr double kHighlightRadius = 5;
constexpr int kEllipsis = 9;
constexpr double kDraggedOpacity = 0.4;

void paintLine(QPainter& painter, const QRect& rect, const QString& text, type::Size size,
               const QColor& color) {
  painter.setFont(type::font(size));
  painter.setPen(color);
  painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   painter.fontMetrics().elidedText(text, Qt::ElideRight, rect.width()));
}

void shade(QPainter& painter, const QRect& rect) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette::kChip);
  painter.drawRoundedRect(rect, kHighlightRadius, kHighlightRadius);
}

bool isCut(const QRect& rect, const QString& text, type::Size size) {
  return QFontMetrics(type::font(size)).horizontalAdvance(text) > rect.width();
}

bool isHeading(const QModelIndex& index) {
  return index.data(BookmarksModel::isHeadingRole).toBool();
}

BookmarkRowGeometry partsOf(const QRect& row, const QModelIndex& index) {
  return isHeading(index)
             ? BookmarkRowGeometry::ofHeading(row, index.data(BookmarksModel::hasMenuRole).toBool())
             : BookmarkRowGeometry::ofBookmark(row);
}

}  // namespace

void BookmarkDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  if (index == dragged_) painter->setOpacity(kDraggedOpacity);
  if (isHeading(index)) {
    paintHeading(*painter, option, index);
  } else {
    paintBookmark(*painter, option, index);
  }
  painter->restore();
  const bool isCurrent = option.state.testFlag(QStyle::State_HasFocus);
  if (isCurrent && option.widget != nullptr && showsFocus(*option.widget)) {
    paintFocusRing(*painter, partsOf(option.rect, index).highlight, kHighlightRadius);
  }
}

void BookmarkDelegate::paintBookmark(QPainter& painter, const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const {
  const auto parts = BookmarkRowGeometry::ofBookmark(option.rect);
  const bool isHovered = option.state.testFlag(QStyle::State_MouseOver);
  if (dragged_.isValid() ? index == dragged_ : isHovered) shade(painter, parts.highlight);
  paintLine(painter, parts.name, index.data().toString(), type::kLabel, palette::kText);
  paintLine(painter, parts.description, index.data(BookmarksModel::descriptionRole).toString(),
            type::kCaption, palette::kFaintText);
}

void BookmarkDelegate::paintHeading(QPainter& painter, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const {
  const auto parts = partsOf(option.rect, index);
  paintLine(painter, parts.name, index.data().toString(), type::kCaption, palette::kFaintText);
  if (parts.button.isEmpty()) return;
  const bool isHovered = index == hoveredButton_;
  if (isHovered) shade(painter, parts.button);
  QRectF symbol(0, 0, type::scaled(kEllipsis), type::scaled(kEllipsis));
  symbol.moveCenter(QRectF(parts.button).center());
  paintSymbol(painter, symbol, QLatin1String("ellipsis"),
              isHovered ? palette::kSecondaryText : palette::kFaintText);
}

QSize BookmarkDelegate::sizeHint(const QStyleOptionViewItem& /*option*/,
                                 const QModelIndex& index) const {
  return {0, isHeading(index) ? BookmarkRowGeometry::headingHeight()
                              : BookmarkRowGeometry::bookmarkHeight()};
}

bool BookmarkDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                 const QStyleOptionViewItem& option, const QModelIndex& index) {
  const auto parts = partsOf(option.rect, index);
  const auto nameSize = isHeading(index) ? type::kCaption : type::kLabel;
  const bool isAnyCut =
      isCut(parts.name, index.data().toString(), nameSize) ||
      isCut(parts.description, index.data(BookmarksModel::descriptionRole).toString(),
            type::kCaption);
  if (isAnyCut) return QStyledItemDelegate::helpEvent(event, view, option, index);
  QToolTip::hideText();
  return true;
}

}  // namespace zelnor::ui
