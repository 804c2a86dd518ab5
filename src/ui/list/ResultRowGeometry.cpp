#include "ui/list/ResultRowGeometry.h"

#include <algorithm>

namespace zelnor::ui {

namespace {
constexpr int kMargin = 20;
constexpr int kGap = 12;
constexpr int kIcon = 28;
constexpr int kSizeWidth = 80;
constexpr int kDateWidth = 118;
constexpr int kNameHeight = 20;
constexpr int kFolderHeight = 16;
}  // namespace

ResultRowGeometry ResultRowGeometry::of(const QRect& row) {
  ResultRowGeometry parts;
  parts.icon = {row.left() + kMargin, row.top() + (row.height() - kIcon) / 2, kIcon, kIcon};
  parts.date = {row.right() + 1 - kMargin - kDateWidth, row.top(), kDateWidth, row.height()};
  parts.size = {parts.date.left() - kGap - kSizeWidth, row.top(), kSizeWidth, row.height()};

  const int left = parts.icon.right() + 1 + kGap;
  const int width = std::max(parts.size.left() - kGap - left, 0);
  const int top = row.top() + (row.height() - kNameHeight - kFolderHeight) / 2;
  parts.name = {left, top, width, kNameHeight};
  parts.folder = {left, top + kNameHeight, width, kFolderHeight};
  return parts;
}

}  // namespace zelnor::ui
