#include <gtest/gtest.h>

#include "indexer/BatchSpool.h"
#include "tests/support/MainThread.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor {
namespace {

BatchSpool::Batch batch(int number) {
  return {{.name = "a\xff\n",
           .path = "/x/a\xff\n",
           .size = number,
           .mtime = -number,
           .kind = FileKind::symlink,
           .inode = 3},
          {.name = "b",
           .path = "/b",
           .size = INT64_MAX,
           .mtime = 0,
           .kind = FileKind::directory,
           .inode = -1}};
}

TEST(BatchSpool, GivesBackWhatItTookInOrder) {
  const test::TemporaryFolder folder;
  test::MainThread main;
  BatchSpool spool(folder.path());
  for (int i = 0; i < 20; ++i) spool.append(batch(i));
  spool.finish();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(main.await(spool.next()), batch(i));
  EXPECT_FALSE(main.await(spool.next()));
  EXPECT_EQ(spool.lost(), 0U);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path())) << "the file has no name";
}

TEST(BatchSpool, WithoutAFileKeepsOneBatchAndCountsTheOthersAsLost) {
  test::MainThread main;
  BatchSpool spool("/does/not/exist");
  for (int i = 0; i < 3; ++i) spool.append(batch(i));
  EXPECT_EQ(main.await(spool.next()), batch(0));
  spool.append(batch(4));
  EXPECT_EQ(main.await(spool.next()), batch(4));
  spool.finish();
  EXPECT_FALSE(main.await(spool.next()));
  EXPECT_EQ(spool.lost(), 2U);
}

}  // namespace
}  // namespace zelnor
