#pragma once

#include <QPixmap>
#include <QRect>

class QPainter;

namespace zelnor::ui {

/// The soft shadow around a rounded surface: made once for a scale, stretched to any size. Main
/// thread.
class WindowShadow {
 public:
  /// How far it reaches beyond the surface, in pixels at scale 1.
  static constexpr int kReach = 28;

  /// Draws the shadow of a `surface` whose corners have `radius`; nothing inside it.
  void paint(QPainter& painter, const QRect& surface, int radius);

 private:
  QPixmap image_;  ///< corners and edges around a middle that is stretched
  double scale_ = 0;
};

}  // namespace zelnor::ui
