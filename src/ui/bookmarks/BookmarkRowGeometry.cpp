#include "ui/bookmarks/BookmarkRowGeometry.h"

#include <QFontMetrics>

#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr int kOutside = 6;  // from the edge of the list to the highlight
constexpr int kInside = 6;   // from there to the text
constexpr int kHighlightPadding = 2;
constexpr int kLineGap = 2;
constexpr int kAboveHeading = 8;
constexpr int kBelowHeading = 3;
constexpr int kButtonGap = 4;

int lineHeight(type::Size size) { return QFontMetrics(type::font(size)).height(); }

}  // namespace

int BookmarkRowGeometry::bookmarkHeight() {
  return lineHeight(type::kLabel) + kLineGap + lineHeight(type::kCaption) + 2 * kHighlightPadding;
}

int BookmarkRowGeometry::headingHeight() {
  return kAboveHeading + lineHeight(type::kCaption) + kBelowHeading;
}

BookmarkRowGeometry BookmarkRowGeometry::ofBookmark(const QRect& row) {
  BookmarkRowGeometry parts;
  parts.highlight = row.adjusted(kOutside, 0, -kOutside, 0);
  const auto text =
      parts.highlight.adjusted(kInside, kHighlightPadding, -kInside, -kHighlightPadding);
  parts.name = text;
  parts.name.setHeight(lineHeight(type::kLabel));
  parts.description = text;
  parts.description.setTop(parts.name.bottom() + 1 + kLineGap);
  return parts;
}

BookmarkRowGeometry BookmarkRowGeometry::ofHeading(const QRect& row, bool hasMenu) {
  BookmarkRowGeometry parts;
  parts.highlight = row.adjusted(kOutside, kAboveHeading / 2, -kOutside, 0);
  parts.name = row.adjusted(kOutside + kInside, kAboveHeading, -kOutside - kInside, -kBelowHeading);
  if (hasMenu) {
    const int side = parts.highlight.height();
    parts.button = {parts.highlight.right() + 1 - side, parts.highlight.top(), side, side};
    parts.name.setRight(parts.button.left() - kButtonGap);
  }
  return parts;
}

}  // namespace zelnor::ui
