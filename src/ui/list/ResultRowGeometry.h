#pragma once

#include <QRect>

namespace zelnor::ui {

/// Where the parts of one result row are.
struct ResultRowGeometry {
  static constexpr int kHeight = 48;

  QRect icon;
  QRect name;
  QRect folder;
  QRect size;
  QRect date;

  /// The parts of a row that fills `row`. In a narrow row, name and folder give way first.
  static ResultRowGeometry of(const QRect& row);
};

}  // namespace zelnor::ui
