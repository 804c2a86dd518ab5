#pragma once

#include <QProxyStyle>

class QApplication;

namespace zelnor::ui {

/// The interface's own look for what Qt draws: scroll bars, menus, text fields and pickers (combo
/// boxes, not editable). Everything else is Fusion's.
class Style final : public QProxyStyle {
  Q_OBJECT

 public:
  enum class Motion : bool { still, animated };

  explicit Style(Motion motion);

  using QProxyStyle::polish;
  void polish(QWidget* widget) override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                     SubControl subControl, const QWidget* widget) const override;
  [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option,
                                       const QSize& contents, const QWidget* widget) const override;
  [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                const QWidget* widget) const override;
  [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                              QStyleHintReturn* data) const override;

 private:
  Motion motion_;
};

/// Gives the application the interface's own look, whatever the desktop's theme.
void applyStyle(QApplication& application, Style::Motion motion = Style::Motion::animated);

/// How long a change that is to be seen takes on the screen: `milliseconds`, or 0 where the user
/// wants things to be still.
int motionTime(const QWidget& widget, int milliseconds);

}  // namespace zelnor::ui
