#include <atomic>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/LoginItem.h"
#include "shell/LaunchAtLoginService.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"

namespace zelnor {
namespace {

using Status = platform::LoginItem::Status;
using testing::ElementsAre;

/// A desktop that does what the test says.
class FakeLoginItem final : public platform::LoginItem {
 public:
  Status status() const override { return now; }
  void registerItem() override { become(afterRegistering); }
  void unregisterItem() override { become(Status::notRegistered); }

  std::atomic<Status> now = Status::notRegistered;
  std::atomic<Status> afterRegistering = Status::enabled;
  std::atomic<bool> refuses = false;

 private:
  void become(Status status) {
    if (refuses) throw std::runtime_error("the disk is full");
    now = status;
  }
};

class LaunchAtLoginServiceTest : public testing::Test {
 protected:
  ~LaunchAtLoginServiceTest() override {
    bool isStopped = false;
    service_.stop([&] { isStopped = true; });
    main_.runUntil([&] { return isStopped; });
  }
  void setEnabled(bool isEnabled) {
    const auto before = looks_.size();
    service_.setEnabled(isEnabled);
    main_.runUntil([&] { return looks_.size() > before; });
  }
  void waitForFirstLook() {
    main_.runUntil([this] { return !looks_.empty(); });
  }

  FakeLoginItem item_;
  test::MainThread main_;
  tasks::ThreadPool pool_{1};
  LaunchAtLoginService service_{item_, main_.executor(), pool_.executor()};
  std::vector<bool> looks_;
  const QMetaObject::Connection connection_ =
      QObject::connect(&service_, &LaunchAtLoginService::looked,
                       [this](bool isEnabled) { looks_.push_back(isEnabled); });
};

TEST_F(LaunchAtLoginServiceTest, IsOnExactlyWhenTheDesktopSaysSo) {
  waitForFirstLook();
  setEnabled(true);
  EXPECT_TRUE(service_.isEnabled());
  setEnabled(false);
  EXPECT_FALSE(service_.isEnabled());
  for (const auto status : {Status::requiresApproval, Status::notFound}) {
    item_.afterRegistering = status;
    setEnabled(true);
    EXPECT_FALSE(service_.isEnabled());
  }
  EXPECT_THAT(looks_, ElementsAre(false, true, false, false, false));
}

TEST_F(LaunchAtLoginServiceTest, AFailureIsOneLineAndTheSwitchMovesBack) {
  waitForFirstLook();
  for (const auto status : {Status::notRegistered, Status::enabled}) {
    item_.now = status;
    item_.refuses = true;
    testing::internal::CaptureStdout();
    setEnabled(status != Status::enabled);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "[LaunchAtLogin] Error: the disk is full\n");
    EXPECT_EQ(service_.isEnabled(), status == Status::enabled);
  }
}

TEST_F(LaunchAtLoginServiceTest, WhatIsAskedForLastIsDoneLast) {
  waitForFirstLook();
  for (const bool isEnabled : {true, false, true, false, true}) service_.setEnabled(isEnabled);
  main_.runUntil([this] { return looks_.size() == 6; });
  EXPECT_TRUE(service_.isEnabled());
  EXPECT_EQ(item_.now, Status::enabled);
}

}  // namespace
}  // namespace zelnor
