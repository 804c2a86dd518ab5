#pragma once

#include <QRect>

namespace zelnor::ui {

/// Where the parts of one result row are.
struct ResultRowGeometry {
  /// How high the two lines of text are.
  struct Lines {
    int name = 0;
    int folder = 0;
  };

  QRect icon;
  QRect name;
  QRect folder;
  QRect size;
  QRect date;

  /// How high a row is: always the same, unless the user wants to read larger texts than fit.
  static int height(const Lines& lines);
  /// The parts of a row that fills `row`. In a narrow row, date and size are empty
  /// where they would leave no room for a name.
  static ResultRowGeometry of(const QRect& row, const Lines& lines);
};

/// Where the titles of the columns are: above what they name. The location, which rows show below
/// the name, has its title at the end of that column's.
struct ResultHeaderGeometry {
  QRect name;
  QRect location;  ///< empty where there is no place for it
  QRect size;      ///< empty like that of the rows
  QRect date;

  /// The parts of a header that fills `header`.
  static ResultHeaderGeometry of(const QRect& header);
};

}  // namespace zelnor::ui
