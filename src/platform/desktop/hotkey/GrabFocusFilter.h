#pragma once

#include <QAbstractNativeEventFilter>

namespace zelnor::platform {

/// Keeps from Qt that the focus seems to leave while a key is grabbed, by us or by any other
/// program: the server says so (XGrabKeyboard(3), NotifyGrab), but the window has it again as soon
/// as the key is let go. Where the focus really goes meanwhile is told by other events.
class GrabFocusFilter final : public QAbstractNativeEventFilter {
 public:
  /// On the program's one QGuiApplication.
  GrabFocusFilter();
  GrabFocusFilter(const GrabFocusFilter&) = delete;
  GrabFocusFilter& operator=(const GrabFocusFilter&) = delete;
  ~GrabFocusFilter() override;

  bool nativeEventFilter(const QByteArray& kind, void* message, qintptr* result) override;
};

}  // namespace zelnor::platform
