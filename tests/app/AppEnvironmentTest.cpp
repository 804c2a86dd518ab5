#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include "app/AppEnvironment.h"
#include "platform/FileLock.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::app {
namespace {

using Kind = IndexStatus::State::Kind;

/// Handles events until `condition` holds; false after a minute without that.
bool runUntil(const std::function<bool()>& condition) {
  const QDeadlineTimer patience(std::chrono::minutes(1));
  QTimer wakeUp;
  wakeUp.start(std::chrono::milliseconds(20));
  QEventLoop events;
  while (!condition() && !patience.hasExpired())
    events.processEvents(QEventLoop::WaitForMoreEvents);
  return condition();
}

/// The program without its window, and what it tells the window.
class Program {
 public:
  explicit Program(const test::TemporaryFolder& home,
                   std::chrono::milliseconds patience = std::chrono::minutes(1))
      : environment_({.homeFolder = home.folder("files"),
                      .dataFolder = home / "data",
                      .settingsFolder = home / "config",
                      .roots = {},
                      .action = {}}) {
    QObject::connect(&environment_, &AppEnvironment::noticeChanged,
                     [this](const QString& notice) { notice_ = notice; });
    QObject::connect(&environment_, &AppEnvironment::indexStatusChanged,
                     [this](const IndexStatus& status) { status_ = status; });
    QObject::connect(&environment_, &AppEnvironment::failed,
                     [](const QString& reason) { ADD_FAILURE() << reason.toStdString(); });
    EXPECT_FALSE(environment_.open(patience));
    environment_.startIndexing();
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() { quit(); }

  void quit() {
    if (!std::exchange(hasQuit_, true)) environment_.shutDown();
  }
  [[nodiscard]] bool onlySearches() const { return notice_.startsWith(u"另一个进程"); }
  [[nodiscard]] bool maintains() const {
    return notice_.isEmpty() && status_ && status_->state.kind == Kind::idle;
  }
  [[nodiscard]] const std::optional<IndexStatus>& status() const { return status_; }

  [[nodiscard]] AppEnvironment& environment() { return environment_; }

  void search(const std::string& text) { environment_.searchViewModel().setQueryText(text); }
  [[nodiscard]] bool lists(const std::string& path) {
    for (const auto& result : environment_.searchViewModel().results()) {
      if (result.record.path == path) return true;
    }
    return false;
  }

 private:
  QString notice_ = QStringLiteral("none yet");
  std::optional<IndexStatus> status_;
  bool hasQuit_ = false;
  AppEnvironment environment_;
};

TEST(AppEnvironment, IndexesTheHomeFolderAndFollowsIt) {
  const test::TemporaryFolder home;
  const auto before = home.file("files/wanted before");
  Program program(home);
  program.search("wanted");
  EXPECT_TRUE(runUntil([&] { return program.lists(before); }));
  const auto after = home.file("files/wanted after");
  EXPECT_TRUE(runUntil([&] { return program.lists(after); }));
  EXPECT_TRUE(program.maintains());
}

TEST(AppEnvironment, OneThatOnlySearchesTakesOverWhenTheOtherEnds) {
  const test::TemporaryFolder home;
  const auto before = home.file("files/wanted before");
  Program other(home);
  ASSERT_TRUE(runUntil([&] { return other.maintains() && other.status()->lastIndexDate; }));
  Program program(home);
  ASSERT_TRUE(runUntil([&] { return program.onlySearches() && program.status(); }));
  EXPECT_EQ(program.status()->totalFiles, other.status()->totalFiles);
  program.search("wanted");
  ASSERT_TRUE(runUntil([&] { return program.lists(before); }));

  other.quit();
  const auto whileNobodyLooked = home.file("files/wanted in between");
  EXPECT_TRUE(runUntil([&] { return program.lists(whileNobodyLooked); }));
  EXPECT_TRUE(program.maintains());
  const auto after = home.file("files/wanted after");
  EXPECT_TRUE(runUntil([&] { return program.lists(after); }));
  EXPECT_EQ(program.status()->totalFiles, other.status()->totalFiles + 2);
}

TEST(AppEnvironment, SaysAtOnceWhyAnIndexCannotBeUsed) {
  const test::TemporaryFolder home;
  home.file("data/index.sqlite", std::string(8192, 'x'));
  AppEnvironment environment({.homeFolder = home.folder("files"),
                              .dataFolder = home / "data",
                              .settingsFolder = home / "config",
                              .roots = {},
                              .action = {}});
  EXPECT_TRUE(environment.open(std::chrono::minutes(1)));
  environment.shutDown();
}

TEST(AppEnvironment, RebuildsFromTheSettingsOnlyWhereNoOtherProcessDoes) {
  const test::TemporaryFolder home;
  home.file("files/one");
  const auto rebuiltIn = [](AppEnvironment& environment) {
    auto& settings = environment.indexViewModel();
    settings.startRebuild();
    EXPECT_TRUE(runUntil([&] { return !settings.isRebuildingIndex(); }));
    return !settings.rebuildError();
  };
  Program first(home);
  ASSERT_TRUE(runUntil([&] { return first.maintains(); }));
  EXPECT_TRUE(rebuiltIn(first.environment()));
  Program second(home);
  ASSERT_TRUE(runUntil([&] { return second.onlySearches(); }));
  EXPECT_FALSE(rebuiltIn(second.environment()));
}

TEST(AppEnvironment, CanBeQuitAtAnyMoment) {
  constexpr int kMoments = 40;
  const test::TemporaryFolder home;
  home.file("data/index.lock");
  const auto takeLock = [&] { return platform::FileLock::tryAcquire(home / "data/index.lock"); };
  const auto quitLater = [&](Program& program, int moment) {
    for (int round = 0; round < moment * moment; ++round) {
      QCoreApplication::processEvents(QEventLoop::AllEvents);
      std::this_thread::yield();
    }
    program.quit();
  };
  for (int moment = 0; moment < kMoments; ++moment) {
    auto other = takeLock();
    Program program(home, std::chrono::milliseconds(0));
    // Until the middle it waits for the index; then it makes it itself.
    if (moment > kMoments / 2) other.reset();
    quitLater(program, moment);
  }
  Program maker(home);
  ASSERT_TRUE(runUntil([&] { return maker.maintains(); }));
  maker.quit();
  for (int moment = 0; moment < kMoments; ++moment) {
    auto other = takeLock();
    Program program(home, std::chrono::milliseconds(0));
    ASSERT_TRUE(runUntil([&] { return program.onlySearches(); }));
    if (moment > 0) other.reset();
    quitLater(program, moment);
  }
  EXPECT_TRUE(takeLock());
}

}  // namespace
}  // namespace zelnor::app
