#pragma once

#include <QRectF>

class QPainter;
class QWidget;

namespace zelnor::ui {

/// Whether `widget` has the keyboard and the user goes about by keyboard: only then a ring is
/// drawn.
bool showsFocus(const QWidget& widget);

/// The ring, just inside `box`.
void paintFocusRing(QPainter& painter, const QRectF& box, double radius);

}  // namespace zelnor::ui
