#pragma once

#include "platform/FileOpener.h"
#include "platform/desktop/GLib.h"

namespace zelnor::platform {

/// Hands an activation on to a program that GIO starts: in its environment, and over D-Bus if that
/// is how it is started.
GObjectPointer<GAppLaunchContext> launchContext(const Activation& activation);

}  // namespace zelnor::platform
