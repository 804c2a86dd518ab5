#include "ui/list/ResultRowGeometry.h"

#include <algorithm>

#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr int kRowHeight = 44;
constexpr int kSmallestPadding = 3;  // above and below the texts
constexpr int kMargin = 12;
constexpr int kColumnGap = 12;
constexpr int kIcon = 28;
constexpr int kLocationWidth = 200;
constexpr int kSizeWidth = 80;
constexpr int kDateWidth = 110;
constexpr int kNameAtLeast = 100;  // before the columns beside it give way
constexpr int kNameTitle = 72;     // what the title of the name needs
constexpr int kLocationTitle = 48;

/// A part of a line from left to right.
struct Span {
  int left = 0;
  int width = 0;

  [[nodiscard]] QRect in(const QRect& line) const {
    return {left, line.top(), width, line.height()};
  }
};

struct Columns {
  Span name;
  Span size;
  Span date;

  /// In a narrow line the date gives way first, then the size: a name says more.
  static Columns of(const QRect& line) {
    Columns columns;
    columns.name.left = line.left() + kMargin + kIcon + kColumnGap;
    int end = line.left() + line.width() - kMargin;
    const int size = type::scaled(kSizeWidth);
    const int date = type::scaled(kDateWidth);
    const int spare = end - columns.name.left - type::scaled(kNameAtLeast);
    if (spare >= size + date + 2 * kColumnGap) {
      columns.date = {end - date, date};
      end = columns.date.left - kColumnGap;
    }
    if (spare >= size + kColumnGap) {
      columns.size = {end - size, size};
      end = columns.size.left - kColumnGap;
    }
    columns.name.width = std::max(end - columns.name.left, 0);
    return columns;
  }
};

}  // namespace

int ResultRowGeometry::height(const Lines& lines) {
  return std::max(kRowHeight, lines.name + lines.folder + 2 * kSmallestPadding);
}

ResultRowGeometry ResultRowGeometry::of(const QRect& row, const Lines& lines) {
  const auto columns = Columns::of(row);
  const int top = row.top() + (row.height() - lines.name - lines.folder) / 2;
  ResultRowGeometry parts;
  parts.icon = {row.left() + kMargin, row.top() + (row.height() - kIcon) / 2, kIcon, kIcon};
  parts.name = {columns.name.left, top, columns.name.width, lines.name};
  parts.folder = {columns.name.left, top + lines.name, columns.name.width, lines.folder};
  parts.size = columns.size.in(row);
  parts.date = columns.date.in(row);
  return parts;
}

ResultHeaderGeometry ResultHeaderGeometry::of(const QRect& header) {
  auto columns = Columns::of(header);
  Span location;
  const int room = columns.name.width - kColumnGap - type::scaled(kNameTitle);
  if (room >= type::scaled(kLocationTitle)) {
    location.width = std::min(room, type::scaled(kLocationWidth));
    location.left = columns.name.left + columns.name.width - location.width;
    columns.name.width = location.left - kColumnGap - columns.name.left;
  }
  return {columns.name.in(header), location.in(header), columns.size.in(header),
          columns.date.in(header)};
}

}  // namespace zelnor::ui
