#pragma once

#include <functional>
#include <optional>

#include "platform/GlobalHotkey.h"

namespace zelnor {

/// The one key combination that brings up the panel. Main thread only.
class GlobalHotkeyManager {
 public:
  using Action = std::function<void(platform::Activation)>;

  /// `hotkey` outlives the manager.
  explicit GlobalHotkeyManager(platform::GlobalHotkey& hotkey) : hotkey_(hotkey) {}
  ~GlobalHotkeyManager() { unregister(); }
  GlobalHotkeyManager(const GlobalHotkeyManager&) = delete;
  GlobalHotkeyManager& operator=(const GlobalHotkeyManager&) = delete;

  /// Makes `config` the one combination and `action` what it does, in place of any earlier one. If
  /// the desktop refuses, one line on standard output says so, and nothing else happens.
  void registerHotkey(const platform::HotkeyConfiguration& config, Action action);
  /// Removes it. No effect if nothing is registered.
  void unregister();

  /// While it is suspended (a new combination is being recorded) the registered one is not heard.
  void setSuspended(bool isSuspended);

 private:
  struct Registration {
    platform::HotkeyConfiguration config;
    Action action;
  };

  void grab(const Registration& registration);

  platform::GlobalHotkey& hotkey_;
  std::optional<Registration> registration_;
  bool isSuspended_ = false;
};

}  // namespace zelnor
