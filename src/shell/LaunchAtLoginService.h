#pragma once

#include <memory>

#include <QObject>

#include "tasks/Async.h"
#include "tasks/TaskGroup.h"

namespace zelnor {

namespace platform {
class LoginItem;
}

/// Whether Zelnor starts when its user logs in, as the desktop has it. Main thread only.
class LaunchAtLoginService final : public QObject {
  Q_OBJECT

 public:
  /// Looks at once, on `background`, as does everything that follows. `item` outlives the tasks.
  LaunchAtLoginService(platform::LoginItem& item, const tasks::Executor& main,
                       const tasks::Executor& background);
  ~LaunchAtLoginService() override;

  /// As last seen; false before the first look has ended.
  [[nodiscard]] bool isEnabled() const { return isEnabled_; }
  /// Asks the desktop for it, then looks what came of it. A failure is one line on standard output.
  void setEnabled(bool isEnabled);

  /// Calls `stopped` when what is under way has ended; the service lives until then.
  void stop(std::function<void()> stopped);

 Q_SIGNALS:
  /// After every look, so that a switch that was moved in vain moves back.
  void looked(bool isEnabled);

 private:
  tasks::Async<void> change(bool isEnabled);
  tasks::Async<void> look();

  platform::LoginItem& item_;
  const tasks::Executor main_;
  const tasks::Executor background_;  ///< a strand: what was asked for last is done last
  tasks::TaskGroup tasks_;
  bool isEnabled_ = false;
};

}  // namespace zelnor
