#pragma once

#include <string>

#include "app/SearchWindowController.h"
#include "bench/Figures.h"
#include "tasks/Async.h"

namespace zelnor::bench {

/// How long it takes from the hot key, pressed as a user would, until the panel is painted and has
/// the keyboard. Needs an X server with a window manager; without one there are no figures.
/// `when` goes into their names.
Figures measureHotkey(app::SearchWindowController& panel, const tasks::Executor& main,
                      const std::string& when);

}  // namespace zelnor::bench
