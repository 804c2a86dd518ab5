#include "platform/desktop/DesktopActivationSource.h"

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

}  // namespace

DesktopActivationSource::DesktopActivationSource(QObject* parent) : QObject(parent) {
  QCoreApplication::instance()->installEventFilter(this);
}

bool DesktopActivationSource::eventFilter(QObject* watched, QEvent* event) {
  if (isDeliberate(event->type())) {
    const auto time = static_cast<QInputEvent*>(event)->timestamp();
    if (time != 0) lastInput_ = time;
  }
  return QObject::eventFilter(watched, event);
}

void DesktopActivationSource::request(Ready ready) {
  Activation activation;
  if (isX11() && lastInput_ != 0) {
    activation.token = startupId(lastInput_);
  }
  ready(std::move(activation));
}

}  // namespace zelnor::platform
