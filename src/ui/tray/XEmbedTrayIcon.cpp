#include "ui/tray/XEmbedTrayIcon.h"

#include <chrono>

#include <QApplication>
#include <QColor>
#include <QCursor>
#include <QEvent>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QTimer>

#include "ui/Menu.h"
#include "ui/Symbol.h"

namespace zelnor::ui {

namespace {

/// Until the bar has drawn what is behind the symbol.
constexpr std::chrono::milliseconds kBarPatience{300};

constexpr QColor kOnUnknownBar(0x7f, 0x7f, 0x7f);
constexpr QColor kOnLightBar(0x24, 0x24, 0x28);
constexpr QColor kOnDarkBar(0xf2, 0xf2, 0xf4);

/// How light the bar is: its colour shows in the corners that the symbol leaves free.
int lightnessBehind(const QImage& icon) {
  const int right = icon.width() - 1;
  const int bottom = icon.height() - 1;
  return (icon.pixelColor(0, 0).lightness() + icon.pixelColor(right, 0).lightness() +
          icon.pixelColor(0, bottom).lightness()) /
         3;
}

}  // namespace

XEmbedTrayIcon::XEmbedTrayIcon(QLatin1String symbol, const QString& toolTip, Menu& menu)
    : symbol_(symbol), menu_(menu), icon_(symbolIcon(symbol, kOnUnknownBar)) {
  icon_.setToolTip(toolTip);
  icon_.setContextMenu(&menu_);
  connect(&icon_, &QSystemTrayIcon::activated, this,
          [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger) menu_.popup(QCursor::pos());
          });
  QCoreApplication::instance()->installEventFilter(this);
  icon_.show();
}

XEmbedTrayIcon::~XEmbedTrayIcon() = default;

bool XEmbedTrayIcon::eventFilter(QObject* watched, QEvent* event) {
  // Qt makes a widget of its own for each bar that comes, and does not say so.
  if (event->type() == QEvent::Show && watched->inherits("QSystemTrayIconSys"))
    QTimer::singleShot(kBarPatience, this, &XEmbedTrayIcon::suitBar);
  return QObject::eventFilter(watched, event);
}

void XEmbedTrayIcon::suitBar() {
  const auto place = icon_.geometry();
  auto* const screen = QApplication::screenAt(place.center());
  if (screen == nullptr || !place.isValid()) return;
  const auto onScreen = place.translated(-screen->geometry().topLeft());
  const auto picture = screen
                           ->grabWindow(/*window=*/0, onScreen.x(), onScreen.y(), onScreen.width(),
                                        onScreen.height())
                           .toImage();
  if (picture.isNull()) return;
  constexpr int kMiddle = 128;
  const bool isLight = lightnessBehind(picture) >= kMiddle;
  icon_.setIcon(symbolIcon(symbol_, isLight ? kOnLightBar : kOnDarkBar));
}

}  // namespace zelnor::ui
