#pragma once

#include <QScrollArea>
#include <QVariantAnimation>

#include "ui/PlainButton.h"

namespace zelnor::ui {

/// The rounded field that holds the query and its buttons.
class Pill final : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// The symbol before the query; it pulses while a search is under way.
class Magnifier final : public QWidget {
  Q_OBJECT

 public:
  explicit Magnifier(QWidget* parent);

  void setPulsing(bool isPulsing);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QVariantAnimation pulse_;
  double opacity_ = 1;
};

/// A cross that comes with the text and goes with it.
class ClearButton final : public PlainButton {
  Q_OBJECT

 public:
  explicit ClearButton(QWidget* parent);

  /// Fades and grows in, or out.
  void setShown(bool isShown);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paint(QPainter& painter) override;

 private:
  QVariantAnimation motion_;
  bool isShown_ = false;
  double shown_ = 0;  ///< from 0 to 1
};

/// Closes or minimizes the window, which has no title bar.
class WindowButton final : public PlainButton {
  Q_OBJECT

 public:
  WindowButton(QLatin1String symbol, const QString& title, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paint(QPainter& painter) override;
  [[nodiscard]] double cornerRadius() const override { return height() / 2.0; }

 private:
  QLatin1String symbol_;
};

/// Opens and closes the filters, and tells how many there are.
class FilterToggle final : public PlainButton {
  Q_OBJECT

 public:
  explicit FilterToggle(QWidget* parent);

  void setCount(int count);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paint(QPainter& painter) override;
};

/// Chips in a row that scrolls sideways, without a scroll bar, where they do not fit.
class ChipRow final : public QScrollArea {
  Q_OBJECT

 public:
  ChipRow(QWidget* chips, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override { return widget()->sizeHint(); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
};

}  // namespace zelnor::ui
