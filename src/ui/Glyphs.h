#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>

/// The interface's few symbols, drawn as outlines into a rectangle so that they fit any scale.
namespace zelnor::ui {

void paintMagnifier(QPainter& painter, const QRectF& rect, const QColor& color);
void paintCross(QPainter& painter, const QRectF& rect, const QColor& color);
/// A folder, filled.
void paintFolder(QPainter& painter, const QRectF& rect, const QColor& color);
/// A sheet of paper with a folded corner, filled.
void paintDocument(QPainter& painter, const QRectF& rect, const QColor& color);

}  // namespace zelnor::ui
