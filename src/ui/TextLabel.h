#pragma once

#include <QColor>
#include <QLabel>
#include <QLatin1String>

#include "ui/Typography.h"

namespace zelnor::ui {

/// A text, shown as it is: never as markup.
QLabel* makeText(const QString& text, type::Size size, const QColor& color, QWidget* parent,
                 QFont::Weight weight = QFont::Normal);
void setTextColor(QWidget& text, const QColor& color);

/// A symbol that is only looked at, with sides of `side` pixels at scale 1.
QWidget* makeSymbol(QLatin1String symbol, int side, const QColor& color, QWidget* parent);

/// The large faint symbol of a page that has nothing to list.
QWidget* makeHeroSymbol(QLatin1String symbol, QWidget* parent);

/// A line one pixel thick.
QWidget* makeSeparator(Qt::Orientation orientation, QWidget* parent);

/// One line of text that is cut in the middle where it does not fit; all of it is the tool tip
/// then.
class ElidedLabel final : public QLabel {
  Q_OBJECT

 public:
  ElidedLabel(type::Size size, const QColor& color, QWidget* parent,
              Qt::TextElideMode mode = Qt::ElideMiddle);

  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Qt::TextElideMode mode_;
};

}  // namespace zelnor::ui
