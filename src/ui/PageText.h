#pragma once

#include <QColor>
#include <QFont>
#include <QString>

class QLabel;
class QWidget;

namespace zelnor::ui {

/// A line of text on a page, shown as it is: never as markup.
QLabel* makeText(const QString& text, int pixelSize, const QColor& color, QWidget* parent,
                 QFont::Weight weight = QFont::Normal);

/// The large faint symbol of a page that has nothing to list.
QWidget* makeMagnifier(QWidget* parent);

}  // namespace zelnor::ui
