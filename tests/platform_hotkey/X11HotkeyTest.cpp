#include <functional>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QWindow>

#include "platform/desktop/hotkey/Combination.h"
#include "platform/desktop/hotkey/X11Hotkey.h"
#include "tests/platform_hotkey/ChildProcess.h"
#include "tests/platform_hotkey/EventLoop.h"
#include "tests/platform_hotkey/TestKeyboard.h"

namespace zelnor::platform {
namespace {

using test::runFor;
using test::runUntil;
using test::TestKeyboard;

using Keys = std::vector<std::uint8_t>;

constexpr std::uint8_t kControl = TestKeyboard::kControl;
constexpr std::uint8_t kAlt = TestKeyboard::kAlt;
constexpr std::uint8_t kSpace = TestKeyboard::kSpace;
constexpr std::uint8_t kLetterA = TestKeyboard::kLetterA;
constexpr std::uint16_t kControlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

/// A real X server.
class X11HotkeyTest : public testing::Test {
 protected:
  explicit X11HotkeyTest(const std::vector<std::string>& options = {})
      : server_(serverCommand(options)) {}

  static std::vector<std::string> serverCommand(const std::vector<std::string>& options) {
    std::vector<std::string> command{"Xvfb",     "-displayfd", "1", "-nolisten", "tcp",
                                     "-noreset", "-screen",    "0", "64x64x24"};
    command.insert(command.end(), options.begin(), options.end());
    return command;
  }
  void grab(X11Hotkey& hotkey, const HotkeyConfiguration& combination = {}) {
    hotkey.grab(
        combination,
        [this](const Activation& activation) {
          tokens_.push_back(activation.token);
          if (onPressed_) onPressed_();
        },
        [this](int code) { refusals_.push_back(code); });
  }
  bool runUntilPressed(std::size_t times) {
    return runUntil([&] { return tokens_.size() >= times; });
  }

  test::ChildProcess server_;
  const std::string display_ = ':' + server_.firstLine();
  TestKeyboard keyboard_{display_};
  std::vector<std::string> tokens_;
  std::vector<int> refusals_;
  std::function<void()> onPressed_;
};

TEST_F(X11HotkeyTest, IsHeardOnceAPressWhateverIsLockedAndWithProofOfIt) {
  X11Hotkey hotkey(display_, std::chrono::milliseconds(0));
  grab(hotkey);
  std::size_t presses = 0;
  for (const auto lock : {TestKeyboard::kCapsLock, TestKeyboard::kNumLock}) {
    keyboard_.tap({kControl, kAlt, kSpace});
    ASSERT_TRUE(runUntilPressed(++presses));
    keyboard_.tap({lock});
    keyboard_.tap({kAlt, kControl, kSpace});
    ASSERT_TRUE(runUntilPressed(++presses));
  }
  keyboard_.tap({kControl, kSpace});
  keyboard_.tap({kControl, kAlt, TestKeyboard::kShift, kSpace});
  keyboard_.tap({kControl, kAlt, TestKeyboard::kSuper, kSpace});
  keyboard_.tap({kControl, kAlt, kLetterA});
  keyboard_.tap({kControl, kAlt, kSpace});
  ASSERT_TRUE(runUntilPressed(++presses));
  EXPECT_EQ(tokens_.size(), presses);
  EXPECT_EQ(std::set<std::string>(tokens_.begin(), tokens_.end()).size(), presses);
  EXPECT_THAT(tokens_, testing::Each(testing::MatchesRegex("zelnor-.*_TIME[1-9][0-9]*")));
  EXPECT_EQ(refusals_, std::vector<int>());
}

TEST_F(X11HotkeyTest, CommandIsSuperAndShiftIsShift) {
  X11Hotkey hotkey(display_, std::chrono::milliseconds(0));
  grab(hotkey,
       {.keyCode = 0, .modifiers = HotkeyConfiguration::kCommand | HotkeyConfiguration::kShift});
  keyboard_.tap({TestKeyboard::kSuper, TestKeyboard::kShift, kLetterA});
  EXPECT_TRUE(runUntilPressed(1));
}

TEST_F(X11HotkeyTest, TwoHundredFastPressesAreTwoHundred) {
  X11Hotkey hotkey(display_, std::chrono::milliseconds(0));
  grab(hotkey);
  keyboard_.press(kControl);
  keyboard_.press(kAlt);
  for (int press = 0; press < 200; ++press) keyboard_.tap({kSpace});
  EXPECT_TRUE(runUntilPressed(200));
  runFor(std::chrono::milliseconds(20));
  EXPECT_EQ(tokens_.size(), 200U);
}

/// One whose keys repeat soon when they are held.
class RepeatingX11HotkeyTest : public X11HotkeyTest {
 protected:
  RepeatingX11HotkeyTest() : X11HotkeyTest({"-ardelay", "20", "-arinterval", "20"}) {}
};

TEST_F(RepeatingX11HotkeyTest, AKeyThatIsHeldIsOnePress) {
  X11Hotkey hotkey(display_, std::chrono::milliseconds(0));
  grab(hotkey);
  keyboard_.press(kControl);
  keyboard_.press(kAlt);
  keyboard_.press(kSpace);
  runFor(std::chrono::milliseconds(300));
  EXPECT_EQ(tokens_.size(), 1U);
  keyboard_.release(kSpace);
  keyboard_.press(kSpace);
  EXPECT_TRUE(runUntilPressed(2));
}

TEST_F(X11HotkeyTest, WorksInEveryLayoutAndAfterItChanged) {
  X11Hotkey hotkey(display_, std::chrono::milliseconds(0));
  grab(hotkey, {.keyCode = 12, .modifiers = HotkeyConfiguration::kOption});
  ASSERT_TRUE(test::runProgram({"setxkbmap", "-display", display_, "-layout", "fr,ru", "-option",
                                "grp:caps_toggle,altwin:swap_alt_win"}));
  // Alt is where Super was, which the grab has to follow.
  ASSERT_TRUE(runUntil([&] { return keyboard_.isTaken(24, XCB_MOD_MASK_1); }));
  keyboard_.tap({TestKeyboard::kSuper, 24});
  EXPECT_TRUE(runUntilPressed(1));
  keyboard_.tap({TestKeyboard::kCapsLock});  // to the second layout
  keyboard_.tap({TestKeyboard::kSuper, 24});
  EXPECT_TRUE(runUntilPressed(2));
}

TEST_F(X11HotkeyTest, FollowsALockThatBecomesAnotherModifier) {
  X11Hotkey hotkey(display_);
  grab(hotkey);
  EXPECT_TRUE(keyboard_.isTaken(kSpace, kControlAlt | XCB_MOD_MASK_2));
  keyboard_.moveModifier(TestKeyboard::kNumLock, XCB_MOD_MASK_3);
  EXPECT_TRUE(runUntil([&] { return keyboard_.isTaken(kSpace, kControlAlt | XCB_MOD_MASK_3); }));
  EXPECT_FALSE(keyboard_.isTaken(kSpace, kControlAlt | XCB_MOD_MASK_2));
  EXPECT_EQ(refusals_, std::vector<int>());
}

TEST_F(X11HotkeyTest, WhatAnotherProgramHoldsIsRefusedAndNothingHalfIsKept) {
  ASSERT_EQ(keyboard_.grab(kSpace, kControlAlt | XCB_MOD_MASK_2), 0);
  X11Hotkey hotkey(display_);
  grab(hotkey);
  EXPECT_EQ(refusals_, std::vector<int>{10});
  TestKeyboard third(display_);
  EXPECT_FALSE(third.isTaken(kSpace, kControlAlt));
  EXPECT_TRUE(third.isTaken(kSpace, kControlAlt | XCB_MOD_MASK_2));
  keyboard_.ungrab(kSpace, kControlAlt | XCB_MOD_MASK_2);
  grab(hotkey);
  EXPECT_EQ(refusals_.size(), 1U);
  EXPECT_TRUE(third.isTaken(kSpace, kControlAlt));
}

TEST_F(X11HotkeyTest, WhatIsTypedAfterItIsForTheWindowItBringsUp) {
  const auto before = keyboard_.makeWindow();
  const auto panel = keyboard_.makeWindow();
  keyboard_.focus(before);
  X11Hotkey hotkey(display_, std::chrono::seconds(10));
  grab(hotkey);
  onPressed_ = [&] { keyboard_.focus(panel); };
  keyboard_.press(kControl);
  keyboard_.press(kAlt);
  keyboard_.press(kSpace);
  keyboard_.release(kAlt);
  keyboard_.release(kControl);
  keyboard_.tap({kLetterA});  // before the space bar is let go
  keyboard_.release(kSpace);
  keyboard_.tap({kLetterA});
  ASSERT_TRUE(runUntilPressed(1));
  EXPECT_EQ(keyboard_.keysPressedIn(panel), Keys());  // held back until the focus is here

  QWindow shown;  // stands for the panel in this program
  shown.show();
  shown.requestActivate();
  Keys arrived;
  EXPECT_TRUE(runUntil([&] {
    for (const auto key : keyboard_.keysPressedIn(panel)) arrived.push_back(key);
    return arrived.size() >= 2;
  }));
  EXPECT_EQ(arrived, (Keys{kLetterA, kLetterA}));

  onPressed_ = nullptr;
  keyboard_.tap({kControl, kAlt, kSpace});
  EXPECT_TRUE(runUntilPressed(2));
  EXPECT_EQ(keyboard_.keysPressedIn(before), Keys());
}

TEST_F(X11HotkeyTest, TheKeyboardIsNotKeptBackForLongOrByWhatIsReleased) {
  const auto window = keyboard_.makeWindow();
  keyboard_.focus(window);
  Keys arrived;
  const auto runUntilTyped = [&] {
    return runUntil([&] {
      for (const auto key : keyboard_.keysPressedIn(window)) arrived.push_back(key);
      return !arrived.empty() && arrived.back() == kLetterA;
    });
  };
  X11Hotkey impatient(display_, std::chrono::milliseconds(1));
  grab(impatient);
  keyboard_.tap({kControl, kAlt, kSpace});
  keyboard_.tap({kLetterA});
  EXPECT_TRUE(runUntilTyped());
  impatient.release();

  arrived.clear();
  X11Hotkey patient(display_, std::chrono::hours(1));
  grab(patient);
  onPressed_ = [&] { patient.release(); };
  keyboard_.tap({kControl, kAlt, kSpace});
  keyboard_.tap({kLetterA});
  EXPECT_TRUE(runUntilTyped());
  EXPECT_EQ(tokens_.size(), 2U);
}

TEST_F(X11HotkeyTest, NothingIsHeardAfterItsReleaseAndTheKeysAreOthersAgain) {
  const auto window = keyboard_.makeWindow();
  keyboard_.focus(window);
  X11Hotkey hotkey(display_);
  hotkey.release();
  grab(hotkey);
  hotkey.release();
  keyboard_.tap({kControl, kAlt, kSpace});
  EXPECT_EQ(keyboard_.keysPressedIn(window), (Keys{kControl, kAlt, kSpace}));
  grab(hotkey, {.keyCode = 0, .modifiers = HotkeyConfiguration::kOption});
  keyboard_.tap({kAlt, kLetterA});
  EXPECT_TRUE(runUntilPressed(1));
  EXPECT_FALSE(keyboard_.isTaken(kSpace, kControlAlt));
}

TEST_F(X11HotkeyTest, WhatIsNoCombinationAndALostServerAreRefused) {
  X11Hotkey hotkey(display_);
  grab(hotkey, {.keyCode = 49, .modifiers = 0});  // nobody could type a space any more
  grab(hotkey, {.keyCode = 49, .modifiers = 0x8000});
  grab(hotkey, {.keyCode = 4242, .modifiers = HotkeyConfiguration::kOption});
  EXPECT_EQ(refusals_, std::vector<int>(3, kHotkeyImpossible));
  EXPECT_FALSE(keyboard_.isTaken(kSpace, 0));
  refusals_.clear();

  grab(hotkey);
  server_.kill();
  runFor(std::chrono::milliseconds(20));
  hotkey.release();
  grab(hotkey);
  X11Hotkey without("unix:/nowhere");  // the number of the lost one may be another's by now
  grab(without);
  EXPECT_EQ(refusals_, std::vector<int>(2, kHotkeyUnavailable));
}

TEST(GrabFocusFilter, OnlyWhatAGrabDoesToTheFocusIsKeptFromQt) {
  GrabFocusFilter filter;
  const auto isKept = [&](std::uint8_t type, std::uint8_t mode, const char* kind) {
    xcb_focus_in_event_t event{};
    event.response_type = type;
    event.mode = mode;
    return filter.nativeEventFilter(kind, &event, /*result=*/nullptr);
  };
  constexpr const char* kEvent = "xcb_generic_event_t";
  for (const auto type : {std::uint8_t{XCB_FOCUS_IN}, std::uint8_t{XCB_FOCUS_OUT}}) {
    EXPECT_TRUE(isKept(type, XCB_NOTIFY_MODE_GRAB, kEvent));
    EXPECT_TRUE(isKept(type, XCB_NOTIFY_MODE_UNGRAB, kEvent));
    EXPECT_FALSE(isKept(type, XCB_NOTIFY_MODE_NORMAL, kEvent));
    EXPECT_FALSE(isKept(type, XCB_NOTIFY_MODE_WHILE_GRABBED, kEvent));
    EXPECT_FALSE(isKept(type, XCB_NOTIFY_MODE_GRAB, "windows_generic_MSG"));
  }
  EXPECT_FALSE(isKept(XCB_ENTER_NOTIFY, XCB_NOTIFY_MODE_GRAB, kEvent));
}

}  // namespace
}  // namespace zelnor::platform
