#pragma once

#include <functional>

#include "platform/desktop/DesktopActivationSource.h"
#include "platform/desktop/DesktopClipboard.h"
#include "platform/desktop/DesktopFileActions.h"
#include "platform/desktop/DesktopFileOpener.h"
#include "platform/desktop/DesktopLoginItem.h"
#include "results/DesktopFileIcons.h"
#include "results/FileOperationService.h"
#include "shell/LaunchAtLoginService.h"
#include "tasks/Async.h"
#include "tasks/Clock.h"
#include "tasks/ThreadPool.h"

namespace zelnor::app {

/// What the windows need of the desktop. Main thread only.
class DesktopServices {
 public:
  DesktopServices(const tasks::Executor& main, tasks::Clock& clock);

  [[nodiscard]] FileOperationService& files() { return files_; }
  [[nodiscard]] platform::Clipboard& clipboard() { return clipboard_; }
  [[nodiscard]] FileIcons& icons() { return icons_; }
  [[nodiscard]] platform::ActivationSource& activation() { return activation_; }
  [[nodiscard]] LaunchAtLoginService& launchService() { return launchService_; }
  /// For what may wait for the disk, or for other programs.
  [[nodiscard]] tasks::Executor blocking() const { return blocking_.executor(); }

  /// Gives up what is under way; calls `stopped` when it has ended.
  void stop(std::function<void()> stopped);

 private:
  // Of its own, because a program or a mount that does not answer must not hold up anything else.
  tasks::ThreadPool blocking_;
  tasks::ThreadPool iconLookUps_;
  platform::DesktopFileActions actions_;
  platform::DesktopFileOpener opener_;
  platform::DesktopActivationSource activation_;
  platform::DesktopClipboard clipboard_;
  DesktopFileIcons icons_;
  FileOperationService files_;
  platform::DesktopLoginItem loginItem_;
  LaunchAtLoginService launchService_;
};

}  // namespace zelnor::app
