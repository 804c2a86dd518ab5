#pragma once

namespace zelnor::platform {

/// Gives the calling thread idle CPU and I/O priority: it runs when nobody else wants the machine.
/// For good; best effort.
void enterBackgroundPriority();

}  // namespace zelnor::platform
