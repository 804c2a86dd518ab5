#include "ui/Style.h"

#include <algorithm>

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QScrollBar>
#include <QStyleOption>

#include "ui/Menu.h"
#include "ui/Palette.h"
#include "ui/Symbol.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr int kScrollBar = 10;
constexpr int kScrollBarMargin = 2;
constexpr int kShortestHandle = 32;
constexpr double kFieldRadius = 5;

/// The part of a scroll bar that is held, within the whole of it.
QRect scrollHandle(const QStyleOptionSlider& bar) {
  const bool isVertical = bar.orientation == Qt::Vertical;
  const int length = isVertical ? bar.rect.height() : bar.rect.width();
  const auto range = static_cast<double>(bar.maximum) - bar.minimum + bar.pageStep;
  const int wanted = range <= 0 ? length : static_cast<int>(length * bar.pageStep / range);
  const int handle = std::min(std::max(wanted, kShortestHandle), length);
  const int at = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                 length - handle, bar.upsideDown);
  return isVertical ? QRect(bar.rect.left(), bar.rect.top() + at, bar.rect.width(), handle)
                    : QRect(bar.rect.left() + at, bar.rect.top(), handle, bar.rect.height());
}

void paintScrollBar(QPainter& painter, const QStyleOptionSlider& bar) {
  if (bar.minimum == bar.maximum) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const bool isHeld = bar.state.testFlag(QStyle::State_Sunken);
  const bool isNear = bar.state.testFlag(QStyle::State_MouseOver);
  painter.setBrush(isHeld || isNear ? palette::kFaintText : palette::kOutline);
  const auto handle = scrollHandle(bar).adjusted(kScrollBarMargin, kScrollBarMargin,
                                                 -kScrollBarMargin, -kScrollBarMargin);
  const double radius = std::min(handle.width(), handle.height()) / 2.0;
  painter.drawRoundedRect(handle, radius, radius);
  painter.restore();
}

void paintField(QPainter& painter, const QStyleOption& option) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const bool hasFocus = option.state.testFlag(QStyle::State_HasFocus);
  painter.setPen(QPen(hasFocus ? palette::kAccent : palette::kOutline, 1));
  painter.setBrush(Qt::white);
  painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), kFieldRadius,
                          kFieldRadius);
  painter.restore();
}

constexpr int kPickerInset = 8;
constexpr int kPickerSymbol = 9;

QRectF pickerSymbol(const QRect& picker) {
  const int side = type::scaled(kPickerSymbol);
  QRectF box(0, 0, side, side);
  box.moveCenter(QRectF(picker).center());
  box.moveRight(picker.right() + 1 - kPickerInset);
  return box;
}

void paintPicker(QPainter& painter, const QStyleOption& option) {
  paintField(painter, option);
  paintSymbol(painter, pickerSymbol(option.rect), QLatin1String("chevron.down"),
              palette::kSecondaryText);
}

void paintPickerText(QPainter& painter, const QStyleOptionComboBox& option) {
  const int end = static_cast<int>(pickerSymbol(option.rect).left());
  const QRect place(option.rect.left() + kPickerInset, option.rect.top(),
                    end - option.rect.left() - 2 * kPickerInset, option.rect.height());
  painter.setPen(palette::kText);
  painter.drawText(
      place, Qt::AlignVCenter | Qt::TextSingleLine,
      option.fontMetrics.elidedText(option.currentText, Qt::ElideRight, place.width()));
}

QPalette colors() {
  QPalette colors(palette::kPanel, palette::kPanel);
  colors.setColor(QPalette::Base, palette::kPanel);
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
    colors.setColor(role, palette::kText);
  }
  colors.setColor(QPalette::PlaceholderText, palette::kFaintText);
  colors.setColor(QPalette::Highlight, palette::kAccent);
  colors.setColor(QPalette::HighlightedText, Qt::white);
  colors.setColor(QPalette::ToolTipBase, Qt::white);
  colors.setColor(QPalette::ToolTipText, palette::kText);
  return colors;
}

}  // namespace

Style::Style(Motion motion) : QProxyStyle(QStringLiteral("Fusion")), motion_(motion) {}

/// Scroll bars lie over what they scroll, which shows through.
void Style::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  if (qobject_cast<QScrollBar*>(widget) != nullptr) {
    widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
  }
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  switch (element) {
    case PE_PanelMenu:
    case PE_FrameMenu:
      return paintMenuPanel(*painter, option->rect);
    case PE_PanelLineEdit:
      if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
          frame != nullptr && frame->lineWidth > 0) {
        paintField(*painter, *option);
      }
      return;
    case PE_FrameFocusRect:
      return;  // drawn by what has the keyboard
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
  if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
      element == CE_MenuItem && item != nullptr) {
    paintMenuItem(*painter, *item);
  } else if (const auto* picker = qstyleoption_cast<const QStyleOptionComboBox*>(option);
             element == CE_ComboBoxLabel && picker != nullptr) {
    paintPickerText(*painter, *picker);
  } else {
    QProxyStyle::drawControl(element, option, painter, widget);
  }
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                               QPainter* painter, const QWidget* widget) const {
  if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
      control == CC_ScrollBar && bar != nullptr) {
    paintScrollBar(*painter, *bar);
  } else if (control == CC_ComboBox) {
    paintPicker(*painter, *option);
  } else {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
}

/// A scroll bar is all groove: there are no arrows at its ends.
QRect Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                            SubControl subControl, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control != CC_ScrollBar || bar == nullptr) {
    return QProxyStyle::subControlRect(control, option, subControl, widget);
  }
  const auto handle = scrollHandle(*bar);
  const bool isVertical = bar->orientation == Qt::Vertical;
  switch (subControl) {
    case SC_ScrollBarGroove:
      return bar->rect;
    case SC_ScrollBarSlider:
      return handle;
    case SC_ScrollBarSubPage:
      return isVertical ? QRect(bar->rect.topLeft(), QPoint(handle.right(), handle.top() - 1))
                        : QRect(bar->rect.topLeft(), QPoint(handle.left() - 1, handle.bottom()));
    case SC_ScrollBarAddPage:
      return isVertical ? QRect(QPoint(handle.left(), handle.bottom() + 1), bar->rect.bottomRight())
                        : QRect(QPoint(handle.right() + 1, handle.top()), bar->rect.bottomRight());
    default:
      return {};
  }
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                              const QWidget* widget) const {
  if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
      type == CT_MenuItem && item != nullptr) {
    return menuItemSize(*item);
  }
  return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option,
                       const QWidget* widget) const {
  switch (metric) {
    case PM_ScrollBarExtent:
    case PM_ScrollView_ScrollBarOverlap:
      return kScrollBar;
    case PM_ScrollBarSliderMin:
      return kShortestHandle;
    case PM_MenuPanelWidth:
      return 1;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
      return kMenuMargin;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* data) const {
  switch (hint) {
    case SH_Widget_Animation_Duration:
      return motion_ == Motion::still ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    case SH_ScrollBar_LeftClickAbsolutePosition:
    case SH_ItemView_ActivateItemOnSingleClick:
      return 0;
    default:
      return QProxyStyle::styleHint(hint, option, widget, data);
  }
}

void applyStyle(QApplication& /*application*/, Style::Motion motion) {
  QApplication::setStyle(new Style(motion));
  QApplication::setPalette(colors());
  // Where the desktop's font has no Chinese, another's forms of the characters might be taken.
  QFont font = QApplication::font();
  font.setFamilies({font.family(), QStringLiteral("Noto Sans CJK SC")});
  QApplication::setFont(font);
}

int motionTime(const QWidget& widget, int milliseconds) {
  const int hint =
      widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget);
  return hint > 0 ? milliseconds : 0;
}

}  // namespace zelnor::ui
