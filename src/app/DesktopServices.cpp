#include "app/DesktopServices.h"

#include <utility>

#include <QIcon>

#include "platform/Priority.h"
#include "platform/desktop/DesktopFileAppearances.h"
#include "platform/desktop/IconTheme.h"
#include "results/FileOperationServices.h"

namespace zelnor::app {

namespace {

/// While one waits for a program to answer, the other moves files.
constexpr std::size_t kBlockingThreads = 2;

DesktopFileIcons::Services iconServices(const tasks::Executor& main,
                                        const tasks::Executor& background) {
  return {.appearances = std::make_unique<platform::DesktopFileAppearances>(),
          .finder = std::make_unique<platform::IconTheme>(QIcon::themeName().toStdString(),
                                                          platform::iconBaseFolders()),
          .main = main,
          .background = background};
}

}  // namespace

DesktopServices::DesktopServices(const tasks::Executor& main, tasks::Clock& clock)
    : blocking_(kBlockingThreads),
      iconLookUps_(/*threads=*/1, platform::enterBackgroundPriority),
      icons_(iconServices(main, iconLookUps_.executor())),
      files_(
          FileOperationServices{actions_, opener_, activation_, clock, main, blocking_.executor()}),
      launchService_(loginItem_, main, blocking_.executor()) {}

void DesktopServices::stop(std::function<void()> stopped) {
  files_.stop([this, stopped = std::move(stopped)] { launchService_.stop(stopped); });
}

}  // namespace zelnor::app
