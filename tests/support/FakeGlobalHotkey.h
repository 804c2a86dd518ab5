#pragma once

#include <optional>
#include <utility>

#include "platform/GlobalHotkey.h"

namespace zelnor::test {

/// A keyboard without keys: tests press the combination, or refuse it.
class FakeGlobalHotkey final : public platform::GlobalHotkey {
 public:
  void grab(const platform::HotkeyConfiguration& combination, Pressed pressed,
            Refused refused) override {
    ++grabs;
    grabbed = combination;
    pressed_ = std::move(pressed);
    refused_ = std::move(refused);
    if (refusal) refused_(*refusal);
  }
  void release() override { grabbed.reset(); }

  /// As the user would; nothing is heard without a grab.
  void press(const platform::Activation& activation = {}) const {
    if (grabbed) pressed_(activation);
  }
  /// As a desktop that takes its time.
  void refuseLater(int code) const { refused_(code); }

  std::optional<int> refusal;  ///< what the next grab is refused with
  std::optional<platform::HotkeyConfiguration> grabbed;
  int grabs = 0;

 private:
  Pressed pressed_;
  Refused refused_;
};

}  // namespace zelnor::test
