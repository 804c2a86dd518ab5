#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "store/DatabaseManager.h"
#include "store/IndexDatabase.h"
#include "tasks/Task.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"
#include "tests/support/RawDatabase.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor {
namespace {

FileRecord record(const std::string& name) {
  return {.name = name, .path = "/home/" + name, .size = 7, .inode = -3};
}

constexpr auto kSecondaryIndexes =
    "SELECT count(*) FROM sqlite_schema WHERE name LIKE 'idx_files_%'";

unsigned modeOf(const std::string& path) {
  struct stat status{};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

class DatabaseManagerTest : public testing::Test {
 protected:
  const test::TemporaryFolder folder_;
  test::MainThread main_;  // outlives the threads that resume on it
  tasks::ThreadPool pool_{2};
  DatabaseManager manager_{folder_ / "data", pool_.executor()};
  const test::RawDatabase raw_{folder_ / "data/index.sqlite"};

  std::vector<FileRecord> all() {
    return main_.await(manager_.search(
        {"SELECT id, name, path, size, mtime, kind, inode FROM files ORDER BY path", {}},
        /*limit=*/200));
  }
};

TEST_F(DatabaseManagerTest, KeepsEveryFieldOfARecord) {
  const FileRecord hard{.name = "it's \"\xff\n%",
                        .path = "/x/it's \"\xff\n%",
                        .size = INT64_MAX,
                        .mtime = -1,
                        .kind = FileKind::symlink,
                        .inode = INT64_MIN};
  main_.await(manager_.batchInsert({hard}));
  auto rows = all();
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_GT(rows[0].id, 0);
  rows[0].id = 0;
  EXPECT_EQ(rows[0], hard);
}

TEST_F(DatabaseManagerTest, ASearchCanBeRepeatedAndHoldsNoReadTransactionInBetween) {
  main_.await(manager_.batchInsert({record("a.txt"), record("b.txt")}));
  DatabaseManager reader(folder_ / "data", pool_.executor(), DatabaseManager::Access::readOnly);
  // Ends after the first of two rows.
  EXPECT_EQ(main_.await(reader.searchCount({"SELECT size FROM files", {}})), 7);
  const auto countOf = [&](const std::string& name) {
    return main_.await(reader.searchCount({"SELECT COUNT(*) FROM files WHERE name = ?", {name}}));
  };
  EXPECT_EQ(countOf("c.txt"), 0);
  main_.await(manager_.batchInsert({record("c.txt")}));
  EXPECT_EQ(raw_.integer("PRAGMA wal_checkpoint(TRUNCATE)"), 0) << "somebody still reads";
  EXPECT_EQ(countOf("c.txt"), 1);
  EXPECT_EQ(countOf("d.txt"), 0);
}

TEST_F(DatabaseManagerTest, ChangesAreAppliedByWhatTheIndexHolds) {
  main_.await(manager_.batchInsert({record("as it is"), record("grows"), record("moves"),
                                    record("moves and grows"), record("goes"), record("stays")}));
  const auto before = all();
  const auto idOf = [](const std::vector<FileRecord>& rows, const std::string& path) {
    const auto row = std::ranges::find(rows, path, &FileRecord::path);
    return row == rows.end() ? 0 : row->id;
  };
  auto grown = record("grows");
  grown.size = 8;
  auto moved = record("moves");
  moved.path = "/elsewhere/moves";
  auto other = record("moves and grows");
  other.path = "/elsewhere/moves and grows";
  other.size = 8;
  const auto difference = main_.await(manager_.apply(
      {.removals = {"/home/moves", "/home/moves and grows", "/home/goes", "/nowhere"},
       .upserts = {moved, record("as it is"), other, grown, record("new")}}));
  EXPECT_EQ(difference, (RowDifference{.inserted = 3, .removed = 3, .moved = 1}));

  auto after = all();
  EXPECT_EQ(idOf(after, "/home/as it is"), idOf(before, "/home/as it is"));
  EXPECT_EQ(idOf(after, moved.path), idOf(before, "/home/moves"));
  const auto largest = std::ranges::max(before, {}, &FileRecord::id).id;
  for (const auto& path : {grown.path, other.path}) EXPECT_GT(idOf(after, path), largest) << path;
  for (auto& row : after) row.id = 0;
  EXPECT_EQ(after,
            (std::vector{moved, other, record("as it is"), grown, record("new"), record("stays")}));
  EXPECT_EQ(raw_.matches("elsewhere"), 2);
  EXPECT_TRUE(raw_.isSound());
}

TEST_F(DatabaseManagerTest, NobodySeesAPartOfTheChangesOfOneDelivery) {
  main_.await(manager_.batchInsert({record("old")}));
  raw_.exec(
      "CREATE INDEX failing ON files(CASE name WHEN 'bad' THEN abs(-9223372036854775808) END)");
  EXPECT_THROW(main_.await(manager_.apply(
                   {.removals = {"/home/old"}, .upserts = {record("new"), record("bad")}})),
               DatabaseError);
  EXPECT_EQ(all().size(), 1U);
  EXPECT_EQ(all()[0].name, "old");
  EXPECT_TRUE(raw_.isSound());
}

TEST_F(DatabaseManagerTest, ReplacingAPathGivesANewRowAndKeepsFullTextInStep) {
  main_.await(manager_.batchInsert({record("a.txt"), record("b.txt")}));
  const auto oldId = all()[0].id;
  main_.await(manager_.batchInsert({record("a.txt")}));
  EXPECT_EQ(main_.await(manager_.totalFileCount()), 2);
  EXPECT_GT(all()[0].id, oldId);
  EXPECT_TRUE(raw_.isSound());
}

TEST_F(DatabaseManagerTest, DeletesExactPathsOnly) {
  main_.await(manager_.batchInsert({record("a"), record("a/b"), record("ab")}));
  main_.await(manager_.deleteByPaths({"/home/a", "/home/not there"}));
  EXPECT_EQ(main_.await(manager_.totalFileCount()), 2);
  EXPECT_TRUE(raw_.isSound());
}

TEST_F(DatabaseManagerTest, AFailingRowLeavesNothingOfItsBatch) {
  main_.await(manager_.batchInsert({record("kept.txt")}));
  raw_.exec(
      "CREATE INDEX failing ON files(CASE name WHEN 'bad' THEN abs(-9223372036854775808) END)");
  try {
    main_.await(manager_.batchInsert(
        {record("first.txt"), record("kept.txt"), record("bad"), record("last.txt")}));
    FAIL() << "no error";
  } catch (const DatabaseError& error) {
    EXPECT_EQ(error.which(), DatabaseError::Case::stepFailed);
  }
  EXPECT_EQ(main_.await(manager_.totalFileCount()), 1);
  EXPECT_TRUE(raw_.isSound());
  main_.await(manager_.batchInsert({record("after.txt")}));
  EXPECT_EQ(main_.await(manager_.totalFileCount()), 2);
}

TEST_F(DatabaseManagerTest, SaysWhatTheIndexLacks) {
  main_.await(manager_.batchInsert({record("a"), record("b")}));
  const auto lacking =
      main_.await(manager_.lacking({record("b"), record("c"), record("a"), record("d")}));
  EXPECT_EQ(lacking, (std::vector{record("c"), record("d")}));
}

TEST_F(DatabaseManagerTest, EmptyOperationsChangeNothing) {
  EXPECT_EQ(main_.await(manager_.totalFileCount()), 0);
  const auto before = raw_.integer("PRAGMA data_version");
  main_.await(manager_.batchInsert({}));
  main_.await(manager_.deleteByPaths({}));
  EXPECT_EQ(raw_.integer("PRAGMA data_version"), before);
}

TEST_F(DatabaseManagerTest, OpeningAgainLeavesAnUnfinishedBulkLoadToWhoeverGoesOnWithIt) {
  main_.await(manager_.beginBulkLoad(/*source=*/-7));
  main_.await(manager_.batchInsert({record("a.txt")}));
  // What a process that died here leaves to the next one.
  DatabaseManager again(folder_ / "data", pool_.executor());
  EXPECT_EQ(main_.await(again.totalFileCount()), 1);
  EXPECT_EQ(main_.await(again.unfinishedBulkLoad()), -7);
  EXPECT_EQ(raw_.integer(kSecondaryIndexes), 0) << "made only to be dropped again";
  EXPECT_TRUE(main_.await(again.isMergingDeferred())) << "the next write would merge everything";
  main_.await(again.breakOffBulkLoad());
  EXPECT_EQ(raw_.integer(kSecondaryIndexes), 5);
  EXPECT_EQ(main_.await(again.unfinishedBulkLoad()), -7);
  main_.await(again.endBulkLoad());
  EXPECT_EQ(main_.await(again.unfinishedBulkLoad()), std::nullopt);
  while (main_.await(again.mergeStep())) {
  }
  EXPECT_FALSE(main_.await(again.isMergingDeferred()));
  EXPECT_EQ(raw_.text("SELECT group_concat(version) FROM schema_version"), "1,1");
}

TEST_F(DatabaseManagerTest, AfterManyChangesAtOnceTheLogIsWrittenBackAsOftenAsBefore) {
  const std::vector<std::function<tasks::Async<void>()>> manyChanges{
      [this] { return manager_.beginBulkLoad(/*source=*/1); },
      [this] { return manager_.endBulkLoad(); },
      [this] { return manager_.beginBulkLoad(/*source=*/1); },
      [this] { return manager_.breakOffBulkLoad(); },
      [this] { return manager_.beginBurst(); },
      [this] { return manager_.endBurst(); },
  };
  const auto logAfterWriting = [&] {
    for (int batch = 0; batch < 20; ++batch) {
      std::vector<FileRecord> records;
      for (int i = 0; i < 2'000; ++i) records.push_back(record(std::to_string(i) + " of many"));
      main_.await(manager_.batchInsert(std::move(records)));
    }
    return std::filesystem::file_size(folder_ / "data/index.sqlite-wal");
  };
  constexpr std::uintmax_t kOrdinaryLog = 6U << 20U;
  for (std::size_t step = 0; step < manyChanges.size(); ++step) {
    main_.await(manyChanges[step]());
    const auto log = logAfterWriting();
    if (step % 2 == 1) {
      EXPECT_LT(log, kOrdinaryLog) << "step " << step;
    } else {
      EXPECT_GT(log, kOrdinaryLog) << "step " << step;
    }
  }
}

TEST_F(DatabaseManagerTest, MergingMakesTheSecondaryIndexesThatNobodyElseHasMade) {
  main_.await(manager_.beginBulkLoad(/*source=*/1));
  DatabaseManager again(folder_ / "data", pool_.executor());
  while (main_.await(again.mergeStep())) {
  }
  EXPECT_EQ(raw_.integer(kSecondaryIndexes), 5);
}

TEST_F(DatabaseManagerTest, WhileItIsInterruptedNothingIsWaitedForOrDone) {
  raw_.exec("BEGIN IMMEDIATE");
  const auto writing =
      tasks::Task::spawn(main_.executor(), [this](const std::stop_token&) -> tasks::Async<void> {
        std::vector records{record("a")};
        co_await manager_.batchInsert(std::move(records));
      });
  main_.runReady();
  const auto begin = std::chrono::steady_clock::now();
  manager_.setInterrupted(true);
  EXPECT_THROW(main_.await(writing.wait()), DatabaseError);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
  raw_.exec("ROLLBACK");
  std::vector<FileRecord> many;
  for (int i = 0; i < 20'000; ++i) many.push_back(record(std::to_string(i)));
  EXPECT_THROW(main_.await(manager_.batchInsert(many)), DatabaseError);
  manager_.setInterrupted(false);
  EXPECT_EQ(main_.await(manager_.totalFileCount()), 0);
  main_.await(manager_.batchInsert({record("b")}));
  EXPECT_TRUE(raw_.isSound());
}

TEST_F(DatabaseManagerTest, FilesAreReadableByTheirOwnerAlone) {
  main_.await(manager_.batchInsert({record("a")}));
  EXPECT_EQ(modeOf(folder_ / "data"), 0700U);
  for (const auto* name : {"index.sqlite", "index.sqlite-wal", "index.sqlite-shm"}) {
    EXPECT_EQ(modeOf(folder_ / "data/" + name), 0600U) << name;
  }
}

TEST_F(DatabaseManagerTest, AReaderGoesOnWhileABatchIsBeingWritten) {
  main_.await(manager_.batchInsert({record("a")}));
  DatabaseManager reader(folder_ / "data", pool_.executor(), DatabaseManager::Access::readOnly);
  raw_.exec("BEGIN IMMEDIATE");
  raw_.exec("DELETE FROM files");
  EXPECT_EQ(main_.await(reader.totalFileCount()), 1);
  raw_.exec("COMMIT");
  EXPECT_EQ(main_.await(reader.totalFileCount()), 0);
  main_.await(reader.batchInsert({record("b")}));  // a reader has nothing to write with
  EXPECT_EQ(main_.await(reader.totalFileCount()), 0);
}

}  // namespace
}  // namespace zelnor
