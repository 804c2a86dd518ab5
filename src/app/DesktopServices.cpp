#include "app/DesktopServices.h"

#include <utility>

#include "results/FileOperationServices.h"

namespace zelnor::app {

DesktopServices::DesktopServices(const tasks::Executor& main, const tasks::Executor& background,
                                 tasks::Clock& clock)
    : icons_(main, background),
      files_(FileOperationServices{actions_, opener_, activation_, clock, main,
                                   blocking_.executor()}) {}

void DesktopServices::stop(std::function<void()> stopped) { files_.stop(std::move(stopped)); }

}  // namespace zelnor::app
