#pragma once

#include <memory>
#include <string>

#include "platform/GlobalHotkey.h"
#include "tasks/Async.h"

namespace zelnor::platform {

/// What this desktop has: a grab of the X server; under Wayland the portal, or GNOME's own
/// shortcuts, which start `program` (a path, or a name on the PATH) instead of calling back.
/// `main` executes on the main thread. Needs a QGuiApplication; nothing is asked before a grab.
std::unique_ptr<GlobalHotkey> makeGlobalHotkey(const tasks::Executor& main,
                                               const std::string& program);

}  // namespace zelnor::platform
