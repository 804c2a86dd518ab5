#include "shell/Preferences.h"

#include <string_view>
#include <utility>

#include <asio/post.hpp>
#include <asio/strand.hpp>

#include <QPointer>

namespace zelnor {

namespace {

constexpr std::string_view kAutoClose = "AutoCloseOnFocusLoss";
constexpr std::string_view kFrame = "SearchWindowFrame";
constexpr std::string_view kGuideShown = "PermissionGuideShown";

/// Answers whether the store holds it now.
std::function<bool(platform::DefaultsStore&)> writing(std::string_view key,
                                                      platform::DefaultsStore::Value value) {
  return [key, value = std::move(value)](platform::DefaultsStore& defaults) {
    defaults.set(key, value);
    return defaults.value(key) == value;
  };
}

}  // namespace

Preferences::Preferences(platform::DefaultsStore& defaults, tasks::Executor main,
                         const tasks::Executor& background)
    : defaults_(defaults),
      main_(std::move(main)),
      writer_(asio::make_strand(background)),
      hotkey_(platform::HotkeyConfiguration::load(defaults)),
      autoCloseOnFocusLoss_(defaults.get<bool>(kAutoClose).value_or(false)),
      frame_(defaults.get<std::string>(kFrame)),
      permissionGuideShown_(defaults.get<bool>(kGuideShown).value_or(false)) {}

void Preferences::setHotkey(const platform::HotkeyConfiguration& hotkey) {
  hotkey_ = hotkey;
  store([hotkey](platform::DefaultsStore& defaults) {
    hotkey.save(defaults);
    return platform::HotkeyConfiguration::load(defaults) == hotkey;
  });
}

void Preferences::setAutoCloseOnFocusLoss(bool isOn) {
  autoCloseOnFocusLoss_ = isOn;
  store(writing(kAutoClose, isOn));
}

void Preferences::setSearchWindowFrame(std::string frame) {
  if (frame_ == frame) return;
  frame_ = std::move(frame);
  store(writing(kFrame, *frame_));
}

void Preferences::setPermissionGuideShown() {
  permissionGuideShown_ = true;
  store(writing(kGuideShown, true));
}

void Preferences::stop(std::function<void()> stopped) {
  asio::post(writer_, [main = main_, stopped = std::move(stopped)] { asio::post(main, stopped); });
}

void Preferences::store(std::function<bool(platform::DefaultsStore&)> write) {
  asio::post(writer_, [write = std::move(write), &defaults = defaults_, main = main_,
                       owner = QPointer(this)] {
    if (write(defaults)) return;
    asio::post(main, [owner] {
      if (owner && !std::exchange(owner->hasSaidSo_, true)) Q_EMIT owner->notStored();
    });
  });
}

}  // namespace zelnor
