#pragma once

#include <cstdint>
#include <memory>

#include <QObject>

#include "platform/ActivationSource.h"
#include "platform/desktop/WaylandActivation.h"

namespace zelnor::platform {

/// On X11, makes startup notification ids (freedesktop.org startup notification protocol) of the
/// time of the user's last key or click in any window of the program; on Wayland, asks the
/// compositor for a token for it, at most for a second. Needs a QGuiApplication, which it does not
/// outlive; main thread.
class DesktopActivationSource final : public QObject, public ActivationSource {
 public:
  explicit DesktopActivationSource(QObject* parent = nullptr);

  void request(Ready ready) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::uint64_t lastInput_ = 0;  ///< the window system's milliseconds; 0 if there was none
  std::unique_ptr<WaylandActivation> wayland_;  ///< only there
};

}  // namespace zelnor::platform
