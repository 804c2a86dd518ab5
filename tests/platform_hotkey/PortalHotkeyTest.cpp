#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/desktop/QtMainExecutor.h"
#include "platform/desktop/hotkey/Combination.h"
#include "platform/desktop/hotkey/FallbackHotkey.h"
#include "platform/desktop/hotkey/GlobalHotkeys.h"
#include "platform/desktop/hotkey/PortalHotkey.h"
#include "tests/platform_hotkey/EventLoop.h"
#include "tests/platform_hotkey/FakePortal.h"
#include "tests/support/FakeGlobalHotkey.h"

namespace zelnor::platform {
namespace {

using test::FakePortal;
using test::runFor;
using test::runUntil;

using Strings = std::vector<std::string>;

class PortalHotkeyTest : public testing::Test {
 protected:
  static constexpr std::chrono::milliseconds kFirstWait{1};

  void grab(GlobalHotkey& hotkey, const HotkeyConfiguration& combination = {}) {
    hotkey.grab(
        combination, [this](const Activation& activation) { tokens_.push_back(activation.token); },
        [this](int code) { refusals_.push_back(code); });
  }
  /// The latest of so many.
  static FakePortal::Binding awaitBinding(FakePortal& portal, std::size_t count) {
    EXPECT_TRUE(runUntil([&] { return portal.bindings().size() >= count; }));
    return portal.bindings().at(count - 1);
  }
  void expectHeard(FakePortal& portal, const FakePortal::Binding& binding) {
    const auto before = tokens_.size();
    portal.activate(binding, binding.id, "token");
    EXPECT_TRUE(runUntil([&] { return tokens_.size() > before; }));
  }
  bool runUntilRefused() {
    return runUntil([&] { return !refusals_.empty(); });
  }

  QtMainExecutor main_;
  PortalHotkey hotkey_{main_.executor(), kFirstWait};
  Strings tokens_;
  std::vector<int> refusals_;
};

TEST_F(PortalHotkeyTest, BindsOnceAndIsHeardWithTheToken) {
  const test::PrivateBus bus;
  FakePortal portal;
  grab(hotkey_);
  const auto binding = awaitBinding(portal, 1);
  EXPECT_EQ(binding.description, "打开 Zelnor 搜索");
  EXPECT_EQ(binding.trigger, "CTRL+ALT+space");
  portal.activate(binding, "another shortcut", "wrong");
  auto foreign = binding;
  foreign.session += "x";
  portal.activate(foreign, binding.id, "wrong");
  portal.activate(binding, binding.id, "first");
  portal.activate(binding, binding.id, "");
  ASSERT_TRUE(runUntil([&] { return tokens_.size() >= 2; }));
  EXPECT_EQ(tokens_, (Strings{"first", ""}));
  EXPECT_EQ(portal.bindings().size(), 1U);
  EXPECT_EQ(refusals_, std::vector<int>());
}

TEST_F(PortalHotkeyTest, WhatTheSessionBroughtIsNotAskedForAgain) {
  const test::PrivateBus bus;
  FakePortal portal(/*answer=*/1, FakePortal::Binds::withTheSession);
  grab(hotkey_);
  const auto binding = awaitBinding(portal, 1);
  EXPECT_EQ(binding.method, "CreateSession");
  EXPECT_EQ(binding.trigger, "CTRL+ALT+space");
  EXPECT_TRUE(runUntil([&] {
    // The session may not be watched yet.
    portal.activate(binding, binding.id, "token");
    return !tokens_.empty();
  }));
  hotkey_.release();
  EXPECT_EQ(portal.bindings().size(), 1U);
}

TEST_F(PortalHotkeyTest, AnotherCombinationTakesThePlaceOfTheFirst) {
  const test::PrivateBus bus;
  FakePortal portal;
  grab(hotkey_);
  const auto first = awaitBinding(portal, 1);
  grab(hotkey_, {.keyCode = 3, .modifiers = HotkeyConfiguration::kCommand});
  const auto second = awaitBinding(portal, 2);
  EXPECT_EQ(second.trigger, "LOGO+f");
  EXPECT_NE(second.id, first.id);  // or the desktop would keep what it has for it
  EXPECT_TRUE(runUntil([&] { return !portal.isConnected(first); }));
  portal.activate(first, first.id, "old");
  expectHeard(portal, second);
  EXPECT_EQ(tokens_, Strings{"token"});
  hotkey_.release();
  EXPECT_TRUE(runUntil([&] { return !portal.isConnected(second); }));
}

TEST_F(PortalHotkeyTest, WhatIsLostIsBoundAgain) {
  auto bus = std::make_unique<test::PrivateBus>();
  auto portal = std::make_unique<FakePortal>();
  grab(hotkey_);
  portal->closeSession(awaitBinding(*portal, 1));
  expectHeard(*portal, awaitBinding(*portal, 2));
  portal.reset();
  portal = std::make_unique<FakePortal>();
  expectHeard(*portal, awaitBinding(*portal, 1));
  EXPECT_EQ(refusals_, std::vector<int>());
}

TEST_F(PortalHotkeyTest, APortalThatStaysAwayIsRefusedOnceAndNotLookedForAnyMore) {
  const test::PrivateBus bus;
  auto portal = std::make_unique<FakePortal>();
  grab(hotkey_);
  awaitBinding(*portal, 1);
  portal.reset();
  ASSERT_TRUE(runUntilRefused());
  EXPECT_EQ(refusals_, std::vector<int>{kHotkeyUnavailable});
  FakePortal late;
  runFor(std::chrono::milliseconds(20));
  EXPECT_TRUE(late.bindings().empty());
}

TEST_F(PortalHotkeyTest, ANoOfTheUsersIsRefusedOnce) {
  const test::PrivateBus bus;
  FakePortal portal(/*answer=*/1);
  grab(hotkey_);
  ASSERT_TRUE(runUntilRefused());
  runFor(std::chrono::milliseconds(20));
  EXPECT_EQ(refusals_, std::vector<int>{kHotkeyTaken});
  EXPECT_EQ(portal.bindings().size(), 1U);
}

TEST_F(PortalHotkeyTest, WithoutABusOrAPortalItIsUnavailable) {
  grab(hotkey_);
  ASSERT_TRUE(runUntilRefused());
  const test::PrivateBus bus;
  grab(hotkey_);
  ASSERT_TRUE(runUntil([&] { return refusals_.size() >= 2; }));
  grab(hotkey_, {.keyCode = 49, .modifiers = 0});
  ASSERT_TRUE(runUntil([&] { return refusals_.size() >= 3; }));
  EXPECT_EQ(refusals_,
            (std::vector<int>{kHotkeyUnavailable, kHotkeyUnavailable, kHotkeyImpossible}));
}

TEST_F(PortalHotkeyTest, AQuestionThatNobodyAnswersHoldsNothingUp) {
  const test::PrivateBus bus;
  FakePortal portal(/*answer=*/std::nullopt);
  grab(hotkey_);
  awaitBinding(portal, 1);
  const auto begun = std::chrono::steady_clock::now();
  hotkey_.release();
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(500));
  EXPECT_EQ(refusals_, std::vector<int>());
}

TEST_F(PortalHotkeyTest, NothingIsToldAfterTheRelease) {
  const test::PrivateBus bus;
  FakePortal denying(/*answer=*/1);
  grab(hotkey_);
  while (denying.bindings().empty()) std::this_thread::yield();
  hotkey_.release();  // with the refusal under way, or waiting for the main thread
  runFor(std::chrono::milliseconds(20));
  EXPECT_EQ(refusals_, std::vector<int>());
}

/// The services of a desktop, in the order in which they are asked.
class FallbackHotkeyTest : public PortalHotkeyTest {
 protected:
  FallbackHotkeyTest() {
    std::vector<std::unique_ptr<GlobalHotkey>> services;
    for (auto*& service : services_) {
      auto made = std::make_unique<test::FakeGlobalHotkey>();
      service = made.get();
      services.push_back(std::move(made));
    }
    fallback_ = std::make_unique<FallbackHotkey>(std::move(services));
  }

  std::array<test::FakeGlobalHotkey*, 2> services_{};
  std::unique_ptr<FallbackHotkey> fallback_;
};

TEST_F(FallbackHotkeyTest, TheFirstServiceThatIsThereDecides) {
  auto& [first, second] = services_;
  grab(*fallback_);
  EXPECT_FALSE(second->grabbed);
  first->refuseLater(kHotkeyTaken);
  EXPECT_EQ(refusals_, std::vector<int>{kHotkeyTaken});
  EXPECT_FALSE(second->grabbed);
  first->refuseLater(kHotkeyUnavailable);
  EXPECT_EQ(second->grabbed, HotkeyConfiguration());
  second->press({.token = "second"});
  EXPECT_EQ(tokens_, Strings{"second"});
  second->refuseLater(kHotkeyUnavailable);
  EXPECT_EQ(refusals_, (std::vector<int>{kHotkeyTaken, kHotkeyUnavailable}));
  fallback_->release();
  EXPECT_FALSE(first->grabbed || second->grabbed);
}

TEST_F(FallbackHotkeyTest, ADesktopWithoutAnyRefusesOnce) {
  const auto hotkey = makeGlobalHotkey(main_.executor(), "zelnor");  // Qt draws nowhere here
  grab(*hotkey);
  hotkey->release();
  EXPECT_EQ(refusals_, std::vector<int>{kHotkeyUnavailable});
}

}  // namespace
}  // namespace zelnor::platform
