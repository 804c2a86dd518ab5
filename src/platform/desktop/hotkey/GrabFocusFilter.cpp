#include "platform/desktop/hotkey/GrabFocusFilter.h"

#include <xcb/xcb.h>

#include <QByteArray>
#include <QCoreApplication>

namespace zelnor::platform {

GrabFocusFilter::GrabFocusFilter() { QCoreApplication::instance()->installNativeEventFilter(this); }

GrabFocusFilter::~GrabFocusFilter() {
  if (auto* const application = QCoreApplication::instance()) {
    application->removeNativeEventFilter(this);
  }
}

bool GrabFocusFilter::nativeEventFilter(const QByteArray& kind, void* message,
                                        qintptr* /*result*/) {
  if (kind != "xcb_generic_event_t") return false;
  const auto* const event = static_cast<const xcb_focus_in_event_t*>(message);
  const bool isFocus =
      event->response_type == XCB_FOCUS_IN || event->response_type == XCB_FOCUS_OUT;
  return isFocus && (event->mode == XCB_NOTIFY_MODE_GRAB || event->mode == XCB_NOTIFY_MODE_UNGRAB);
}

}  // namespace zelnor::platform
