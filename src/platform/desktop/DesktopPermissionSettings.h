#pragma once

#include "platform/PermissionSettings.h"

namespace zelnor::platform {

/// The page of GNOME or KDE, whichever $XDG_CURRENT_DESKTOP says is running.
class DesktopPermissionSettings final : public PermissionSettings {
 public:
  bool open(const Activation& activation) override;
};

}  // namespace zelnor::platform
