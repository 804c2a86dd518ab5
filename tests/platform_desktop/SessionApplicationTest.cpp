#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusMessage>
#include <QEventLoop>
#include <QTimer>

#include "platform/desktop/SessionApplication.h"
#include "tests/support/PrivateBus.h"

namespace zelnor::platform {
namespace {

using Standing = SessionApplication::Standing;
using testing::ElementsAre;
using testing::Pair;

/// What an application was told: the action, empty for showing itself, and the token.
class Told {
 public:
  explicit Told(SessionApplication& application) {
    QObject::connect(&application, &SessionApplication::activated, &context_,
                     [this](const Activation& activation) { add({}, activation); });
    QObject::connect(
        &application, &SessionApplication::actionActivated, &context_,
        [this](const QString& action, const Activation& activation) { add(action, activation); });
  }
  std::vector<std::pair<std::string, std::string>> all;

 private:
  void add(const QString& action, const Activation& activation) {
    all.emplace_back(action.toStdString(), activation.token);
  }
  QObject context_;
};

bool runUntil(const std::function<bool()>& condition) {
  bool isTooLate = false;
  QTimer::singleShot(std::chrono::seconds(30), [&] { isTooLate = true; });
  QTimer wakeUp;
  wakeUp.start(std::chrono::milliseconds(20));
  QEventLoop events;
  while (!condition() && !isTooLate) events.processEvents(QEventLoop::WaitForMoreEvents);
  return condition();
}

TEST(SessionApplication, OneIsFirstAndIsToldWhatTheOthersAreStartedFor) {
  const test::PrivateBus bus;
  SessionApplication first;
  ASSERT_EQ(first.claim(), Standing::first);
  const Told told(first);
  {
    SessionApplication second;
    ASSERT_EQ(second.claim(), Standing::second);
    EXPECT_TRUE(second.forward({}, {}));
    EXPECT_TRUE(second.forward({}, {"a token"}));
    EXPECT_TRUE(second.forward(QStringLiteral("preferences"), {"another"}));
  }
  EXPECT_THAT(told.all,
              ElementsAre(Pair("", ""), Pair("", "a token"), Pair("preferences", "another")));
}

TEST(SessionApplication, TheNameIsFreeWhenTheFirstHasEnded) {
  const test::PrivateBus bus;
  {
    EXPECT_EQ(SessionApplication().claim(), Standing::first);
  }
  EXPECT_EQ(SessionApplication().claim(), Standing::first);
}

TEST(SessionApplication, WithoutABusNobodyKnows) {
  test::PrivateBus bus;
  bus.stop();
  SessionApplication application;
  EXPECT_EQ(application.claim(), Standing::noBus);
  EXPECT_FALSE(application.forward({}, {}));
}

TEST(SessionApplication, FindsABusAgainThatWentAway) {
  test::PrivateBus bus;
  SessionApplication first;
  ASSERT_EQ(first.claim(), Standing::first);
  const Told told(first);
  bus.stop();
  bus.start();
  const auto isFirstAgain = [&] {
    SessionApplication second;
    return second.claim() == Standing::second && second.forward({}, {});
  };
  EXPECT_TRUE(runUntil(isFirstAgain));
  EXPECT_FALSE(told.all.empty());
}

}  // namespace
}  // namespace zelnor::platform
