#include "platform/desktop/hotkey/GlobalHotkeys.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <QGuiApplication>
#include <QScreen>

#include "platform/desktop/hotkey/FallbackHotkey.h"
#include "platform/desktop/hotkey/GnomeHotkey.h"
#include "platform/desktop/hotkey/PortalHotkey.h"
#include "platform/desktop/hotkey/X11Hotkey.h"

namespace zelnor::platform {

namespace {

bool isGnome() {
  return qEnvironmentVariable("XDG_CURRENT_DESKTOP")
      .split(QLatin1Char(':'))
      .contains(QStringLiteral("GNOME"));
}

/// Before version 23 only the names of its screens tell.
bool hasXwaylandScreen() {
  const auto screens = QGuiApplication::screens();
  return std::ranges::any_of(screens, [](const QScreen* screen) {
    return screen->name().startsWith(QStringLiteral("XWAYLAND"));
  });
}

/// Null where an X server does not see every key.
std::unique_ptr<GlobalHotkey> x11Hotkey() {
  if (QGuiApplication::platformName() != QStringLiteral("xcb") || hasXwaylandScreen()) return {};
  auto hotkey = std::make_unique<X11Hotkey>();
  if (hotkey->isXwayland()) return {};
  return hotkey;
}

bool isWayland() {
  // A program of the X server that shares its screen with Wayland is in a Wayland session.
  return QGuiApplication::platformName().startsWith(QStringLiteral("wayland")) ||
         QGuiApplication::platformName() == QStringLiteral("xcb");
}

}  // namespace

std::unique_ptr<GlobalHotkey> makeGlobalHotkey(const tasks::Executor& main,
                                               const std::string& program) {
  if (auto hotkey = x11Hotkey()) return hotkey;
  std::vector<std::unique_ptr<GlobalHotkey>> services;
  if (isWayland()) {
    services.push_back(std::make_unique<PortalHotkey>(main));
    if (isGnome()) services.push_back(std::make_unique<GnomeHotkey>(main, program));
  }
  return std::make_unique<FallbackHotkey>(std::move(services));
}

}  // namespace zelnor::platform
