#pragma once

#include <functional>

#include "platform/desktop/DesktopActivationSource.h"
#include "platform/desktop/DesktopClipboard.h"
#include "platform/desktop/DesktopFileActions.h"
#include "platform/desktop/DesktopFileOpener.h"
#include "results/DesktopFileIcons.h"
#include "results/FileOperationService.h"
#include "tasks/Async.h"
#include "tasks/Clock.h"
#include "tasks/ThreadPool.h"

namespace zelnor::app {

/// What the results need of the desktop. Main thread only.
class DesktopServices {
 public:
  /// Files' icons are looked up on `background`.
  DesktopServices(const tasks::Executor& main, const tasks::Executor& background,
                  tasks::Clock& clock);

  [[nodiscard]] FileOperationService& files() { return files_; }
  [[nodiscard]] platform::Clipboard& clipboard() { return clipboard_; }
  [[nodiscard]] FileIcons& icons() { return icons_; }

  /// Gives up what is under way; calls `stopped` when it has ended.
  void stop(std::function<void()> stopped);

 private:
  /// One hangs in a program that does not answer, and the other still moves files.
  static constexpr std::size_t kThreads = 2;

  tasks::ThreadPool blocking_{kThreads};
  platform::DesktopFileActions actions_;
  platform::DesktopFileOpener opener_;
  platform::DesktopActivationSource activation_;
  platform::DesktopClipboard clipboard_;
  DesktopFileIcons icons_;
  FileOperationService files_;
};

}  // namespace zelnor::app
