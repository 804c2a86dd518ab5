#pragma once

#include <cstdint>

#include <QObject>

#include "platform/ActivationSource.h"

namespace zelnor::platform {

/// Makes startup notification ids (freedesktop.org startup notification protocol) of the time of
/// the user's last key or click in any window of the program. Needs a QGuiApplication; main thread.
class DesktopActivationSource final : public QObject, public ActivationSource {
 public:
  explicit DesktopActivationSource(QObject* parent = nullptr);

  void request(Ready ready) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::uint64_t lastInput_ = 0;  ///< the window system's milliseconds; 0 if there was none
};

}  // namespace zelnor::platform
