#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <optional>

#include <gtest/gtest.h>

#include "store/DatabaseError.h"
#include "store/IndexDatabase.h"
#include "tests/support/RawDatabase.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor {
namespace {

using Case = DatabaseError::Case;

std::optional<DatabaseError> errorOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const DatabaseError& error) {
    return error;
  }
  return std::nullopt;
}

TEST(DatabaseError, DescribesItselfToTheUser) {
  const struct {
    DatabaseError error;
    std::string description;
  } rows[] = {
      {DatabaseError::openFailed("/a b/index.sqlite", 14),
       "无法打开数据库 /a b/index.sqlite，错误码：14"},
      {DatabaseError::execFailed("COMMIT", "disk full", 13), "SQL 执行失败：disk full"},
      {DatabaseError::prepareFailed("SELECT", 1), "SQL 编译失败 (code=1)：SELECT"},
      {DatabaseError::stepFailed(19), "SQL 执行步骤失败，错误码：19"},
      {DatabaseError::bindFailed(2, 25), "参数绑定失败 index=2，错误码：25"},
  };
  for (const auto& row : rows) EXPECT_EQ(row.error.what(), row.description);
}

TEST(OpeningAnIndex, FailsWithTheReasonAndHarmsNothing) {
  const test::TemporaryFolder folder;
  // The file is a folder.
  folder.folder("a/index.sqlite");
  auto error = errorOf([&] { IndexDatabase::openForWriting(folder / "a"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->which(), Case::openFailed);
  EXPECT_EQ(error->what(), "无法打开数据库 " + (folder / "a/index.sqlite") + "，错误码：14");

  // There is nothing to read.
  error = errorOf([&] { IndexDatabase::openForReading(folder / "nothing"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->which(), Case::openFailed);

  // The data folder cannot be made.
  folder.file("b", "a file");
  EXPECT_THROW(IndexDatabase::openForWriting(folder / "b"), std::filesystem::filesystem_error);

  // The file is no database.
  const std::string text(4096, 'x');
  folder.file("c/index.sqlite", text);
  error = errorOf([&] { IndexDatabase::openForWriting(folder / "c"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->which(), Case::execFailed);
  EXPECT_EQ(error->code(), SQLITE_NOTADB);
  EXPECT_EQ(std::filesystem::file_size(folder / "c/index.sqlite"), text.size());
}

TEST(OpeningAnIndex, RefusesAnotherProgramsTableAndLeavesItUntouched) {
  for (const auto* columns : {"id INTEGER PRIMARY KEY, title TEXT",
                              "id INTEGER PRIMARY KEY, name TEXT, path TEXT, "
                              "mtime, kind, inode, size2"}) {
    const test::TemporaryFolder folder;
    const test::RawDatabase raw(folder / "index.sqlite");
    raw.exec(std::string("CREATE TABLE files (") + columns + ")");
    raw.exec("INSERT INTO files(id) VALUES (42)");
    const auto error = errorOf([&] { IndexDatabase::openForWriting(folder.path()); });
    ASSERT_TRUE(error) << columns;
    EXPECT_NE(error->which(), Case::openFailed);
    EXPECT_EQ(raw.integer("SELECT id FROM files"), 42);
    EXPECT_EQ(raw.integer("SELECT count(*) FROM sqlite_schema"), 1) << "nothing was added";
  }
}

TEST(WritingAnIndex, FailsWhenAnotherProcessKeepsTheLockPastTheTimeout) {
  const test::TemporaryFolder folder;
  auto database = IndexDatabase::openForWriting(folder.path());
  const std::vector<FileRecord> records{{.name = "a", .path = "/a"}};
  database.batchInsert(records);
  const test::RawDatabase other(folder / "index.sqlite");
  other.exec("BEGIN IMMEDIATE");
  const std::vector<FileRecord> more{{.name = "b", .path = "/b"}};
  const auto error = errorOf([&] { database.batchInsert(more); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->which(), Case::execFailed);
  EXPECT_EQ(error->code(), SQLITE_BUSY);
  EXPECT_EQ(database.totalFileCount(), 1);
  other.exec("ROLLBACK");
  database.batchInsert(more);
  EXPECT_EQ(database.totalFileCount(), 2);
}

/// Runs in a process of its own: fills the index until the file system takes no more.
[[noreturn]] void fillUntilFull(const std::string& folder) {
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{.rlim_cur = 3 << 20, .rlim_max = 3 << 20};
  setrlimit(RLIMIT_FSIZE, &limit);
  auto database = IndexDatabase::openForWriting(folder);
  std::int64_t stored = 0;
  const auto error = errorOf([&] {
    for (int batch = 0;; ++batch) {
      std::vector<FileRecord> records;
      for (int i = 0; i < 1000; ++i) {
        const auto name = std::to_string(batch) + "-" + std::to_string(i) + " quarterly report.pdf";
        records.push_back({.name = name, .path = "/home/user/documents/" + name});
      }
      database.batchInsert(records);
      stored += 1000;
    }
  });
  const bool kept = database.totalFileCount() == stored;
  _exit(stored > 0 && kept && error && *error->what() != 0 ? 0 : 1);
}

TEST(WritingAnIndex, KeepsWhatItHadWhenTheDiskIsFull) {
  const test::TemporaryFolder folder;
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) fillUntilFull(folder.path());
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  const auto database = IndexDatabase::openForWriting(folder.path());
  EXPECT_TRUE(test::RawDatabase(folder / "index.sqlite").isSound());
}

}  // namespace
}  // namespace zelnor
