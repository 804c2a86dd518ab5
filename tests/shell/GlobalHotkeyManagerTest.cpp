#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "shell/GlobalHotkeyManager.h"
#include "tests/support/FakeGlobalHotkey.h"

namespace zelnor {
namespace {

using platform::Activation;
using platform::HotkeyConfiguration;

constexpr HotkeyConfiguration kOther{.keyCode = 3, .modifiers = HotkeyConfiguration::kCommand};

class GlobalHotkeyManagerTest : public testing::Test {
 protected:
  GlobalHotkeyManager::Action noting(const std::string& name) {
    return [this, name](const Activation& activation) {
      calls_.push_back(name + ':' + activation.token);
    };
  }

  test::FakeGlobalHotkey hotkey_;
  GlobalHotkeyManager manager_{hotkey_};
  std::vector<std::string> calls_;
};

TEST_F(GlobalHotkeyManagerTest, RegisteringTwiceLeavesOneCombinationAndOneAction) {
  manager_.registerHotkey({}, noting("first"));
  hotkey_.press({.token = "a"});
  manager_.registerHotkey(kOther, noting("second"));
  EXPECT_EQ(hotkey_.grabbed, kOther);
  hotkey_.press({.token = "b"});
  manager_.unregister();
  manager_.unregister();
  EXPECT_EQ(hotkey_.grabbed, std::nullopt);
  hotkey_.press();
  EXPECT_EQ(calls_, (std::vector<std::string>{"first:a", "second:b"}));
}

TEST_F(GlobalHotkeyManagerTest, ARefusalIsOneLineOnStandardOutput) {
  hotkey_.refusal = 10;
  testing::internal::CaptureStdout();
  manager_.registerHotkey({}, noting("refused"));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "⚠️ RegisterEventHotKey 失败 (code=10)，该快捷键可能已被其他应用占用\n");
  hotkey_.refusal.reset();
  testing::internal::CaptureStdout();
  manager_.registerHotkey(kOther, noting("late"));
  hotkey_.refuseLater(-17);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "⚠️ RegisterEventHotKey 失败 (code=-17)，该快捷键可能已被其他应用占用\n");
}

TEST_F(GlobalHotkeyManagerTest, NothingIsHeardWhileACombinationIsRecorded) {
  manager_.setSuspended(true);
  manager_.setSuspended(false);
  EXPECT_EQ(hotkey_.grabs, 0);  // there is nothing to take up again
  manager_.registerHotkey({}, noting("old"));
  manager_.setSuspended(true);
  hotkey_.press();
  manager_.registerHotkey(kOther, noting("new"));
  hotkey_.press();
  EXPECT_EQ(calls_, std::vector<std::string>());
  manager_.setSuspended(false);
  EXPECT_EQ(hotkey_.grabbed, kOther);
  hotkey_.press();
  EXPECT_EQ(calls_, std::vector<std::string>{"new:"});
}

}  // namespace
}  // namespace zelnor
