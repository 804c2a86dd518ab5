#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "results/FileOperationService.h"
#include "results/FileOperationServices.h"
#include "tasks/ThreadPool.h"
#include "tests/support/FakeAlerts.h"
#include "tests/support/FakeFileActions.h"
#include "tests/support/FakeFileOpener.h"
#include "tests/support/MainThread.h"
#include "tests/support/ManualClock.h"

namespace zelnor {
namespace {

using std::chrono_literals::operator""ms;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;
using Ids = std::set<std::int64_t>;

/// The rows of files "/1", "/2" and so on, with ids of the same number.
std::vector<SearchResult> rows(std::initializer_list<int> numbers) {
  std::vector<SearchResult> rows;
  for (const int number : numbers) {
    SearchResult row;
    row.record.id = number;
    row.record.path = "/" + std::to_string(number);
    rows.push_back(row);
  }
  return rows;
}

class FileOperationServiceTest : public testing::Test {
 protected:
  FileOperationServiceTest() {
    service_->setAlerts(&alerts_);
    QObject::connect(service_.get(), &FileOperationService::trashed,
                     [this](const Ids& ids) { trashed_.push_back(ids); });
    QObject::connect(service_.get(), &FileOperationService::progressChanged,
                     [this](int done, int total) {
                       progress_.push_back(std::to_string(done) + "/" + std::to_string(total));
                     });
  }
  ~FileOperationServiceTest() override { stop(); }

  void until(const std::function<bool()>& condition) { main_.runUntil(condition); }
  void untilDone(std::size_t actions) {
    until([&, actions] { return actions_.done().size() == actions; });
  }
  void untilAlert(std::size_t alerts = 1) {
    until([&, alerts] { return alerts_.shown.size() == alerts; });
  }
  void untilIdle() {
    until([&] { return !service_->isMoving(); });
  }
  /// Answers what was done after the call, which must be nothing.
  void stop() {
    if (!service_) return;
    bool stopped = false;
    service_->stop([&] { stopped = true; });
    for (int i = 0; i < 8; ++i) actions_.release();
    until([&] { return stopped; });
    service_.reset();
  }

  test::ManualClock clock_;
  test::FakeFileActions actions_;
  test::FakeFileOpener opener_;
  test::FakeActivationSource activation_;
  test::FakeAlerts alerts_;
  std::vector<Ids> trashed_;
  Texts progress_;
  test::MainThread main_;
  tasks::ThreadPool pool_{2};
  std::unique_ptr<FileOperationService> service_ =
      std::make_unique<FileOperationService>(FileOperationServices{
          actions_, opener_, activation_, clock_, main_.executor(), pool_.executor()});
};

TEST_F(FileOperationServiceTest, FilesGoToTheTrashInOrderAndTheirRowsAtTheEnd) {
  service_->moveToTrash(rows({3, 1, 2}));
  EXPECT_TRUE(service_->isMoving());
  EXPECT_THAT(actions_.done(), IsEmpty());  // not inside the call
  untilIdle();
  EXPECT_THAT(actions_.done(), ElementsAre("trash /3", "trash /1", "trash /2"));
  EXPECT_THAT(progress_, ElementsAre("1/3", "2/3", "3/3"));
  EXPECT_THAT(trashed_, ElementsAre(Ids{1, 2, 3}));
  EXPECT_THAT(alerts_.shown, IsEmpty());
  service_->moveToTrash({});
  EXPECT_FALSE(service_->isMoving());
}

TEST_F(FileOperationServiceTest, EachFailureIsAnAlertAndTheNextFileWaitsForIt) {
  actions_.failures = {{"/1", "gone"}, {"/3", "locked"}};
  service_->moveToTrash(rows({1, 2, 3}));
  untilAlert();
  main_.runReady();
  EXPECT_THAT(alerts_.shown, ElementsAre("无法删除文件: gone (more)"));
  EXPECT_THAT(actions_.done(), ElementsAre("trash /1"));
  alerts_.close(/*goOn=*/true);
  untilAlert(2);
  EXPECT_EQ(alerts_.shown.back(), "无法删除文件: locked");
  EXPECT_THAT(trashed_, IsEmpty());
  alerts_.close(/*goOn=*/true);
  untilIdle();
  EXPECT_THAT(trashed_, ElementsAre(Ids{1, 2, 3}));
}

TEST_F(FileOperationServiceTest, WhoWantsNoMoreKeepsTheRestAndWhatWaited) {
  actions_.failures = {{"/1", "gone"}};
  service_->moveToTrash(rows({1, 2}));
  service_->moveToTrash(rows({3}));
  untilAlert();
  alerts_.close(/*goOn=*/false);
  untilIdle();
  EXPECT_THAT(actions_.done(), ElementsAre("trash /1"));
  EXPECT_THAT(trashed_, ElementsAre(Ids{1}));
}

TEST_F(FileOperationServiceTest, ACallWaitsForTheOneBeforeIt) {
  actions_.failures = {{"/2", "gone"}};
  service_->moveToTrash(rows({1, 2}));
  untilAlert();
  service_->moveToTrash(rows({3, 4}));
  main_.runReady();
  EXPECT_THAT(actions_.done(), ElementsAre("trash /1", "trash /2"));
  alerts_.close(/*goOn=*/true);
  untilIdle();
  EXPECT_THAT(trashed_, ElementsAre(Ids{1, 2}, Ids{3, 4}));
}

TEST_F(FileOperationServiceTest, CancellingEndsAfterTheFileInHandAndCallsAfterItBeginAnew) {
  actions_.isHeld = true;
  service_->moveToTrash(rows({1, 2, 3}));
  service_->moveToTrash(rows({4}));
  actions_.release();
  until([&] { return progress_.size() == 1; });
  service_->cancel();
  service_->moveToTrash(rows({5}));
  for (int i = 0; i < 5; ++i) actions_.release();
  untilIdle();
  EXPECT_THAT(actions_.done(), ElementsAre("trash /1", "trash /2", "trash /5"));
  EXPECT_THAT(trashed_, ElementsAre(Ids{1, 2}, Ids{5}));
}

TEST_F(FileOperationServiceTest, AfterHalfASecondOfWorkItTakesLong) {
  std::vector<bool> states;
  QObject::connect(service_.get(), &FileOperationService::isTakingLongChanged,
                   [&] { states.push_back(service_->isTakingLong()); });
  actions_.isHeld = true;
  actions_.failures = {{"/1", "gone"}};
  const auto pass = [this](tasks::Clock::Duration time) {
    until([&] { return clock_.sleeping() == 1; });
    clock_.advance(time);
    main_.runReady();
  };
  service_->moveToTrash(rows({1, 2}));
  pass(499ms);
  actions_.release();
  untilAlert();
  clock_.advance(10'000ms);  // the user's own time
  main_.runReady();
  alerts_.close(/*goOn=*/true);
  pass(499ms);
  EXPECT_THAT(states, IsEmpty());
  pass(1ms);
  EXPECT_THAT(states, ElementsAre(true));
  actions_.release();
  untilIdle();
  EXPECT_THAT(states, ElementsAre(true, false));
  EXPECT_EQ(clock_.sleeping(), 0U);
}

TEST_F(FileOperationServiceTest, RenamesWithinTheFolderToExactlyWhatWasTyped) {
  service_->rename("/a/b/old", " new \xff");
  untilDone(1);
  service_->rename("/old", "");
  untilDone(2);
  EXPECT_THAT(actions_.done(),
              ElementsAre("rename /a/b/old to /a/b/ new \xff", "rename /old to /"));
  EXPECT_THAT(alerts_.shown, IsEmpty());
}

TEST_F(FileOperationServiceTest, ThereIsOneAlertAtATime) {
  actions_.failures = {{"/1", "gone"}, {"/x", "taken"}};
  service_->moveToTrash(rows({1, 2}));
  untilAlert();
  service_->rename("/x", "y");
  untilDone(2);
  for (int i = 0; i < 3; ++i) main_.runReady();
  EXPECT_EQ(alerts_.shown.size(), 1U);
  alerts_.close(/*goOn=*/true);
  untilAlert(2);
  EXPECT_EQ(alerts_.shown.back(), "无法重命名: taken");
  untilIdle();  // moving does not wait for that one
  alerts_.close(/*goOn=*/true);
}

TEST_F(FileOperationServiceTest, AlertsThatGoAwayHoldNobodyUp) {
  actions_.failures = {{"/1", "gone"}, {"/2", "gone"}};
  service_->moveToTrash(rows({1, 2, 3}));
  untilAlert();
  service_->setAlerts(nullptr);
  untilIdle();
  EXPECT_THAT(trashed_, ElementsAre(Ids{1, 2, 3}));
  alerts_.close(/*goOn=*/false);  // too late to matter
}

TEST_F(FileOperationServiceTest, OpeningHandsOnTheActivationAndIsQuietAboutFailures) {
  opener_.fails = true;
  activation_.isSlow = true;
  service_->open("/a");
  service_->reveal("/b");
  main_.runReady();
  EXPECT_THAT(opener_.done(), IsEmpty());
  activation_.give();
  until([&] { return opener_.done().size() == 2; });
  EXPECT_THAT(opener_.done(), testing::UnorderedElementsAre("open /a token", "reveal /b token"));
  main_.runReady();
  EXPECT_THAT(alerts_.shown, IsEmpty());
}

TEST_F(FileOperationServiceTest, StoppingEndsBetweenFilesAndWaitsForNoAlert) {
  actions_.failures = {{"/2", "gone"}};
  activation_.isSlow = true;
  service_->moveToTrash(rows({1, 2, 3}));
  service_->open("/late");
  untilAlert();
  stop();
  EXPECT_THAT(actions_.done(), ElementsAre("trash /1", "trash /2"));
  activation_.give();
  alerts_.close(/*goOn=*/true);
  main_.runReady();
  EXPECT_THAT(opener_.done(), IsEmpty());
}

}  // namespace
}  // namespace zelnor
