#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include <gtest/gtest.h>

#include "tests/support/IndexerFixture.h"
#include "tests/support/RawDatabase.h"

namespace zelnor {
namespace {

constexpr int kFiles = 24'000;

/// In a process of its own: fills the index again and again until it is killed. Says so before each
/// rebuild.
[[noreturn]] void rebuildForEver(const std::string& data, const std::string& tree, int announce) {
  test::Indexer indexer(data);
  for (;;) {
    if (write(announce, "x", 1) != 1) _exit(1);
    indexer.rebuild(test::configurationOf(tree));
    indexer.main().await(indexer.actor().settled());
  }
}

/// Kills a rebuild after `delay`, wherever it is then.
void killARebuild(const std::string& data, const std::string& tree,
                  std::chrono::microseconds delay) {
  std::array<int, 2> announcement{};
  ASSERT_EQ(pipe(announcement.data()), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) rebuildForEver(data, tree, announcement[1]);
  char started = 0;
  ASSERT_EQ(read(announcement[0], &started, 1), 1);
  usleep(static_cast<useconds_t>(delay.count()));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  close(announcement[0]);
  close(announcement[1]);
}

TEST(KilledRebuild, LeavesItsFinishedBatchesAndTheNextOneCompletes) {
  const test::TemporaryFolder tree;
  const test::TemporaryFolder data;
  for (int i = 0; i < kFiles; ++i)
    tree.file(std::to_string(i % 100) + "/file " + std::to_string(i) + ".txt");
  constexpr unsigned kSeed = 20;
  std::mt19937 random(kSeed);
  bool sawAPart = false;
  for (int moment = 0; moment < 50; ++moment) {
    const std::chrono::microseconds delay(random() % 1'000'000);
    SCOPED_TRACE("seed " + std::to_string(kSeed) + ", moment " + std::to_string(moment) +
                 ", after " + std::to_string(delay.count()) + " us");
    killARebuild(data.path(), tree.path(), delay);
    test::Indexer indexer(data.path());
    const test::RawDatabase raw(data / "index.sqlite");
    ASSERT_TRUE(raw.isSound());
    const auto rows = raw.integer("SELECT count(*) FROM files");
    // Batches of 10,000 are there in whole or not at all.
    ASSERT_TRUE(rows % 10'000 == 0 || rows == kFiles + 100) << rows;
    sawAPart = sawAPart || (rows > 0 && rows < kFiles);
    if (moment % 10 == 9) {
      ASSERT_EQ(indexer.rebuild(test::configurationOf(tree.path())).totalFiles, kFiles + 100);
      ASSERT_EQ(raw.integer("SELECT count(*) FROM sqlite_schema WHERE name LIKE 'idx_files_%'"), 5);
    }
  }
  EXPECT_TRUE(sawAPart);
}

}  // namespace
}  // namespace zelnor
