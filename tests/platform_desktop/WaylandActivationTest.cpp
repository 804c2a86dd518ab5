#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>

#include "platform/desktop/WaylandActivation.h"
#include "tests/platform_desktop/FakeCompositor.h"

namespace zelnor::platform {
namespace {

using Strings = std::vector<std::string>;

class WaylandActivationTest : public testing::Test {
 protected:
  void start(std::chrono::milliseconds patience = std::chrono::hours(1)) {
    activation_ = std::make_unique<WaylandActivation>(compositor_.client(), patience);
    compositor_.exchange();
  }
  void request(const std::string& name) {
    activation_->request(
        {}, [this, name](const std::string& token) { answers_.push_back(name + ':' + token); });
    compositor_.exchange();
  }

  test::FakeCompositor compositor_;
  std::unique_ptr<WaylandActivation> activation_;
  Strings answers_;
};

TEST_F(WaylandActivationTest, EachRequestGetsItsToken) {
  compositor_.announceActivation();
  start();
  request("first");
  request("second");
  ASSERT_EQ(compositor_.tokens(), 2U);
  compositor_.grant(1, "b");
  compositor_.exchange();
  compositor_.grant(0, "a");
  compositor_.exchange();
  EXPECT_EQ(answers_, (Strings{"second:b", "first:a"}));
  EXPECT_EQ(compositor_.tokens(), 0U);
}

TEST_F(WaylandActivationTest, ACompositorWithoutItHasNoTokens) {
  start();
  request("before");
  compositor_.announceActivation();
  compositor_.exchange();
  request("there");
  ASSERT_EQ(compositor_.tokens(), 1U);
  compositor_.grant(0, "a");
  compositor_.exchange();
  compositor_.withdrawActivation();
  compositor_.exchange();
  request("after");
  EXPECT_EQ(answers_, (Strings{"before:", "there:a", "after:"}));
}

TEST_F(WaylandActivationTest, ASilentCompositorIsNotWaitedForAndComesTooLate) {
  compositor_.announceActivation();
  start(std::chrono::milliseconds(1));
  request("silent");
  ASSERT_EQ(compositor_.tokens(), 1U);
  const QDeadlineTimer deadline(std::chrono::seconds(20));
  while (answers_.empty() && !deadline.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  compositor_.grant(0, "late");
  compositor_.exchange();
  EXPECT_EQ(answers_, Strings{"silent:"});
}

TEST_F(WaylandActivationTest, NothingIsAnsweredWhenItIsGone) {
  compositor_.announceActivation();
  start();
  request("forgotten");
  compositor_.grant(0, "token");
  activation_.reset();
  compositor_.exchange();
  EXPECT_EQ(answers_, Strings());
  EXPECT_EQ(compositor_.tokens(), 0U);
}

}  // namespace
}  // namespace zelnor::platform
