#pragma once

#include <functional>
#include <optional>
#include <string>

#include <QObject>

#include "platform/DefaultsStore.h"
#include "platform/HotkeyConfiguration.h"
#include "tasks/Async.h"

namespace zelnor {

/// What the user has set for the application as a whole, and what it remembers of its windows.
///
/// Main thread only. A value counts from the moment it is set; it is stored on another thread, in
/// the order of setting.
class Preferences final : public QObject {
  Q_OBJECT

 public:
  /// Reads `defaults`, which outlives what is written on `background`. `main` is the main thread.
  Preferences(platform::DefaultsStore& defaults, tasks::Executor main,
              const tasks::Executor& background);

  [[nodiscard]] const platform::HotkeyConfiguration& hotkey() const { return hotkey_; }
  void setHotkey(const platform::HotkeyConfiguration& hotkey);

  /// Whether the panel hides when another window gets the focus.
  [[nodiscard]] bool autoCloseOnFocusLoss() const { return autoCloseOnFocusLoss_; }
  void setAutoCloseOnFocusLoss(bool isOn);

  /// Where the panel was, in its own words; nothing before it was closed for the first time.
  [[nodiscard]] const std::optional<std::string>& searchWindowFrame() const { return frame_; }
  void setSearchWindowFrame(std::string frame);

  /// Whether the user was told once that parts of the disk cannot be read.
  [[nodiscard]] bool permissionGuideShown() const { return permissionGuideShown_; }
  void setPermissionGuideShown();

  /// Calls `stopped` on the main thread when everything set so far has been stored.
  void stop(std::function<void()> stopped);

 Q_SIGNALS:
  /// A setting could not be stored, so that it holds only until the program ends. Once per process.
  void notStored();

 private:
  void store(std::function<bool(platform::DefaultsStore&)> write);

  platform::DefaultsStore& defaults_;
  const tasks::Executor main_;
  const tasks::Executor writer_;
  platform::HotkeyConfiguration hotkey_;
  bool autoCloseOnFocusLoss_;
  std::optional<std::string> frame_;
  bool permissionGuideShown_;
  bool hasSaidSo_ = false;
};

}  // namespace zelnor
