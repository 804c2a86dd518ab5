#pragma once

#include <QRect>

namespace zelnor::ui {

/// Where the parts of a row of the sidebar are. Heights follow the fonts.
struct BookmarkRowGeometry {
  QRect highlight;  ///< what is shaded under the pointer
  QRect name;
  QRect description;  ///< empty in a heading
  QRect button;       ///< of a heading's menu; empty in a bookmark

  static BookmarkRowGeometry ofBookmark(const QRect& row);
  static BookmarkRowGeometry ofHeading(const QRect& row, bool hasMenu);
  static int bookmarkHeight();
  static int headingHeight();
};

}  // namespace zelnor::ui
