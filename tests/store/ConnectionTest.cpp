#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "store/DatabaseManager.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"
#include "tests/support/RawDatabase.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor {
namespace {

/// Whether another process finds what SQLite locks of a database that is open, see "Locking
/// Bytes" in its file format, locked by this one.
bool isLockedByThisProcess(const std::string& path) {
  const pid_t holder = getpid();
  const pid_t other = fork();
  if (other == 0) {
    struct flock lock{
        .l_type = F_WRLCK, .l_whence = SEEK_SET, .l_start = 0x40000000, .l_len = 512, .l_pid = 0};
    const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
    const bool isAsked = file >= 0 && fcntl(file, F_GETLK, &lock) == 0;
    _exit(isAsked && lock.l_type == F_RDLCK && lock.l_pid == holder ? 0 : 1);
  }
  int status = -1;
  waitpid(other, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(Connection, OpeningTheIndexAgainLeavesTheLocksThatTheProcessHasOnIt) {
  const test::TemporaryFolder folder;
  const tasks::ThreadPool pool(/*threads=*/1);
  const auto path = folder / "index.sqlite";
  const DatabaseManager first(folder.path(), pool.executor());
  ASSERT_TRUE(isLockedByThisProcess(path));
  for (const auto access :
       {DatabaseManager::Access::readWrite, DatabaseManager::Access::readOnly}) {
    const DatabaseManager another(folder.path(), pool.executor(), access);
    EXPECT_TRUE(isLockedByThisProcess(path));
  }
  EXPECT_TRUE(isLockedByThisProcess(path));
}

TEST(Connection, AnIndexThatOthersCouldReadIsItsOwnersAloneOnceItIsOpened) {
  const test::TemporaryFolder folder;
  const tasks::ThreadPool pool(/*threads=*/1);
  const auto path = folder.file("index.sqlite");
  ASSERT_EQ(chmod(path.c_str(), 0644), 0);
  const DatabaseManager manager(folder.path(), pool.executor());
  for (const auto& name : {path, path + "-wal", path + "-shm"}) {
    struct stat status{};
    ASSERT_EQ(stat(name.c_str(), &status), 0) << name;
    EXPECT_EQ(status.st_mode & 07777U, 0600U) << name;
  }
}

TEST(Connection, ClosingLeavesTheLogToTheNextOneWhoFindsAllOfItThere) {
  const test::TemporaryFolder folder;
  test::MainThread main;
  const tasks::ThreadPool pool(/*threads=*/1);
  {
    DatabaseManager manager(folder.path(), pool.executor());
    main.await(manager.batchInsert({{.name = "a", .path = "/a"}}));
  }
  // Whoever quits must not wait until it is written back.
  EXPECT_GT(std::filesystem::file_size(folder / "index.sqlite-wal"), 0);
  DatabaseManager next(folder.path(), pool.executor(), DatabaseManager::Access::readOnly);
  EXPECT_EQ(main.await(next.totalFileCount()), 1);
}

TEST(Connection, IsSetUpForOneWriterAndReadersWithLimitedMemory) {
  using Access = DatabaseManager::Access;
  const test::TemporaryFolder folder;
  test::MainThread main;  // outlives the threads that resume on it
  const tasks::ThreadPool pool(/*threads=*/1);
  for (const auto access : {Access::readWrite, Access::readOnly}) {
    DatabaseManager manager(folder.path(), pool.executor(), access);
    const auto setting = [&](const std::string& name) {
      return main.await(manager.searchCount({"PRAGMA " + name, {}}));
    };
    EXPECT_EQ(setting("mmap_size"), 134'217'728);
    EXPECT_EQ(setting("cache_size"), -32'768);
    EXPECT_EQ(setting("temp_store"), 2) << "MEMORY";
    EXPECT_EQ(setting("foreign_keys"), 1);
    if (access == Access::readWrite) {
      EXPECT_EQ(setting("synchronous"), 1) << "NORMAL";
    }
  }
  EXPECT_EQ(test::RawDatabase(folder / "index.sqlite").text("PRAGMA journal_mode"), "wal");
}

}  // namespace
}  // namespace zelnor
