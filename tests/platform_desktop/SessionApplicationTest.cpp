#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include "platform/desktop/SessionApplication.h"
#include "tests/support/PrivateBus.h"

namespace zelnor::platform {
namespace {

using Standing = SessionApplication::Standing;
using testing::ElementsAre;
using testing::Pair;

/// An application on a bus, and what it was told: the action, empty for showing itself, and the
/// token.
class Application {
 public:
  explicit Application(const std::string& bus)
      : session_(bus, [this](const std::string& action, const Activation& activation) {
          told.emplace_back(action, activation.token);
        }) {}

  Standing claim() { return session_.claim(); }
  bool forward(const std::string& action, const std::string& token) {
    return session_.forward(action, {token});
  }

  std::vector<std::pair<std::string, std::string>> told;

 private:
  SessionApplication session_;
};

bool runUntil(const std::function<bool()>& condition) {
  const QDeadlineTimer patience(std::chrono::seconds(30));
  QTimer wakeUp;
  wakeUp.start(std::chrono::milliseconds(20));
  QEventLoop events;
  while (!condition() && !patience.hasExpired())
    events.processEvents(QEventLoop::WaitForMoreEvents);
  return condition();
}

TEST(SessionApplication, OneIsFirstAndIsToldWhatTheOthersAreStartedFor) {
  const test::PrivateBus bus;
  Application first(bus.address());
  ASSERT_EQ(first.claim(), Standing::first);
  {
    Application second(bus.address());
    ASSERT_EQ(second.claim(), Standing::second);
    EXPECT_TRUE(second.forward("", ""));
    EXPECT_TRUE(second.forward("", "a token"));
    EXPECT_TRUE(second.forward("preferences", "another"));
  }
  EXPECT_THAT(first.told,
              ElementsAre(Pair("", ""), Pair("", "a token"), Pair("preferences", "another")));
}

TEST(SessionApplication, TheNameIsFreeWhenTheFirstHasEnded) {
  const test::PrivateBus bus;
  {
    EXPECT_EQ(Application(bus.address()).claim(), Standing::first);
  }
  const auto isFree = [&] { return Application(bus.address()).claim() == Standing::first; };
  EXPECT_TRUE(runUntil(isFree));
}

TEST(SessionApplication, WithoutABusNobodyKnows) {
  test::PrivateBus bus;
  bus.stop();
  for (const auto& address : {bus.address(), std::string(), std::string("nonsense")}) {
    Application application(address);
    EXPECT_EQ(application.claim(), Standing::noBus);
    EXPECT_FALSE(application.forward("", ""));
  }
}

TEST(SessionApplication, FindsABusAgainThatWentAway) {
  test::PrivateBus bus;
  Application first(bus.address());
  ASSERT_EQ(first.claim(), Standing::first);
  bus.stop();
  bus.start();
  const auto isFirstAgain = [&] {
    Application second(bus.address());
    return second.claim() == Standing::second && second.forward("", "");
  };
  EXPECT_TRUE(runUntil(isFirstAgain));
  EXPECT_FALSE(first.told.empty());
}

}  // namespace
}  // namespace zelnor::platform
