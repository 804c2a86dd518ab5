#include <sys/stat.h>

#include <gtest/gtest.h>

#include "store/DatabaseManager.h"
#include "store/IndexDatabase.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"
#include "tests/support/RawDatabase.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor {
namespace {

FileRecord record(const std::string& name) {
  return {.name = name, .path = "/home/" + name, .size = 7, .inode = -3};
}

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

TEST_F(DatabaseManagerTest, TellsWhatItDoesNotHoldAsItIs) {
  main_.await(manager_.batchInsert({record("a.txt"), record("b.txt")}));
  auto touched = record("b.txt");
  touched.mtime = 1;
  EXPECT_EQ(main_.await(manager_.differing({record("a.txt"), touched, record("c.txt")})),
            (std::vector{touched, record("c.txt")}));
}

TEST_F(DatabaseManagerTest, ARowThatMovedKeepsItsIdAndOtherChangesAreLeft) {
  main_.await(manager_.batchInsert({record("a.txt"), record("b.txt"), record("c.txt")}));
  const auto before = all();
  auto moved = record("a.txt");
  moved.path = "/elsewhere/a.txt";
  auto grown = record("b.txt");
  grown.path = "/elsewhere/b.txt";
  grown.size = 8;
  const auto others = main_.await(manager_.moveRows(
      {.removals = {"/home/a.txt", "/home/b.txt", "/nowhere"}, .upserts = {grown, moved}}));
  EXPECT_EQ(others.removals, (std::vector<std::string>{"/home/b.txt", "/nowhere"}));
  EXPECT_EQ(others.upserts, std::vector{grown});
  const auto after = all();
  moved.id = before[0].id;
  EXPECT_EQ(after, (std::vector{moved, before[1], before[2]}));
  EXPECT_EQ(raw_.matches("elsewhere"), 1);
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

TEST_F(DatabaseManagerTest, OpeningAgainKeepsTheRowsAndMendsAnUnfinishedBulkLoad) {
  main_.await(manager_.beginBulkLoad());
  main_.await(manager_.batchInsert({record("a.txt")}));
  const auto secondaryIndexes = "SELECT count(*) FROM sqlite_schema WHERE name LIKE 'idx_files_%'";
  const auto automerge = "SELECT v FROM files_fts_config WHERE k = 'automerge'";
  EXPECT_EQ(raw_.integer(secondaryIndexes), 0);
  EXPECT_EQ(raw_.integer(automerge), 0);
  // What a process that died here leaves to the next one.
  DatabaseManager again(folder_ / "data", pool_.executor());
  EXPECT_EQ(main_.await(again.totalFileCount()), 1);
  EXPECT_EQ(raw_.integer(secondaryIndexes), 5);
  EXPECT_EQ(raw_.integer(automerge), 4);
  EXPECT_EQ(raw_.text("SELECT group_concat(version) FROM schema_version"), "1,1");
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
