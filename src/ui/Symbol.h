#pragma once

#include <QColor>
#include <QIcon>
#include <QLatin1String>
#include <QRectF>
#include <QSizeF>

class QPainter;

/// The interface's symbols: drawings of our own, one file a name in `symbols/`, in any colour and
/// sharp at any scale. Main thread.
namespace zelnor::ui {

/// Draws the symbol called `name` in the middle of `box`, as large as fits.
void paintSymbol(QPainter& painter, const QRectF& box, QLatin1String name, const QColor& color);

/// How many pixels of its device a unit of the painter is.
double pixelsOf(const QPainter& painter);

/// The same as `paintSymbol` for what takes an icon, such as the entries of a menu.
QIcon symbolIcon(QLatin1String name, const QColor& color);

}  // namespace zelnor::ui
