#include "platform/desktop/DesktopActivationSource.h"

#include <string>
#include <utility>

#include <qpa/qplatformnativeinterface.h>

#include <QGuiApplication>
#include <QInputEvent>

#include "platform/desktop/StartupId.h"

namespace zelnor::platform {

namespace {

/// Moving the pointer over a window asks for nothing.
bool isDeliberate(QEvent::Type type) {
  switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
      return true;
    default:
      return false;
  }
}

bool isX11() { return QGuiApplication::platformName() == QStringLiteral("xcb"); }

/// What Qt's Wayland plug-in has under that name; null elsewhere.
template <class T>
T* waylandObject(const char* name) {
  if (!QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))) return nullptr;
  auto* const native = QGuiApplication::platformNativeInterface();
  return static_cast<T*>(native->nativeResourceForIntegration(name));
}

WaylandActivation::Input lastWaylandInput() {
  WaylandActivation::Input input;
  if (auto* const window = QGuiApplication::focusWindow()) {
    input.surface = static_cast<wl_surface*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", window));
  }
  // A number in the place of a pointer; 0 before the first key or click.
  input.serial =
      static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(waylandObject<void>("serial")));
  if (input.serial != 0) input.seat = waylandObject<wl_seat>("wl_seat");
  return input;
}

}  // namespace

DesktopActivationSource::DesktopActivationSource(QObject* parent) : QObject(parent) {
  QCoreApplication::instance()->installEventFilter(this);
  if (auto* const display = waylandObject<wl_display>("wl_display")) {
    wayland_ = std::make_unique<WaylandActivation>(display);
  }
}

bool DesktopActivationSource::eventFilter(QObject* watched, QEvent* event) {
  if (isDeliberate(event->type())) {
    const auto time = static_cast<QInputEvent*>(event)->timestamp();
    if (time != 0) lastInput_ = time;
  }
  return QObject::eventFilter(watched, event);
}

void DesktopActivationSource::request(Ready ready) {
  if (wayland_) {
    wayland_->request(lastWaylandInput(), [ready = std::move(ready)](std::string token) {
      ready({.token = std::move(token)});
    });
    return;
  }
  Activation activation;
  if (isX11() && lastInput_ != 0) activation.token = startupId(lastInput_);
  ready(std::move(activation));
}

}  // namespace zelnor::platform
