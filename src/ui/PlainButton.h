#pragma once

#include <QColor>
#include <QLatin1String>
#include <QPushButton>

class QPainter;

namespace zelnor::ui {

/// What all buttons of the interface have in common: they are drawn by themselves, change under the
/// pointer, and show when they have the keyboard.
class PlainButton : public QPushButton {
  Q_OBJECT

 public:
  /// The title is what a screen reader says. It is not the text of the button, which Qt would
  /// search for a letter to press.
  PlainButton(const QString& title, QWidget* parent);

  [[nodiscard]] QString title() const { return accessibleName(); }
  void setTitle(const QString& title);

 protected:
  /// Draws the button; the focus ring is drawn over it.
  virtual void paint(QPainter& painter) = 0;
  /// Of the focus ring.
  [[nodiscard]] virtual double cornerRadius() const { return 4; }

  void paintEvent(QPaintEvent* event) final;
  void keyPressEvent(QKeyEvent* event) override;
};

/// A symbol to press.
class SymbolButton final : public PlainButton {
  Q_OBJECT

 public:
  /// `symbolSize` is the side of the symbol, in pixels at scale 1. The title is the tool tip and
  /// what a screen reader says.
  SymbolButton(QLatin1String symbol, int symbolSize, const QString& title, QWidget* parent);

  void setSymbol(QLatin1String symbol, const QColor& color);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paint(QPainter& painter) override;

 private:
  QLatin1String symbol_;
  QColor color_;
  int symbolSize_;
};

}  // namespace zelnor::ui
