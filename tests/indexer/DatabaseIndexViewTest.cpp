#include <future>
#include <limits>

#include <gtest/gtest.h>

#include "indexer/DatabaseIndexView.h"
#include "store/DatabaseManager.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor {
namespace {

TEST(DatabaseIndexView, LooksUpOnePathOnceWhatWasDeliveredBeforeIsInTheIndex) {
  const test::TemporaryFolder data;
  test::MainThread main;
  const tasks::ThreadPool pool(1);
  DatabaseManager database(data.path(), pool.executor());
  const auto gate = std::make_shared<platform::HandoverGate>();
  DatabaseIndexView view(data.path(), gate);

  gate->handOver();
  auto inode = std::async(std::launch::async, [&] { return view.inodeOf("/r/a", {}); });
  main.await(database.batchInsert(
      {{.name = "a", .path = "/r/a", .inode = -1}, {.name = "ab", .path = "/r/ab", .inode = 2}}));
  gate->applied();
  EXPECT_EQ(inode.get(), std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(view.inodeOf("/r/ab", {}), 2U);
  for (const auto* unknown : {"/r", "/r/", "/r/aa", "/R/a"}) {
    EXPECT_EQ(view.inodeOf(unknown, {}), std::nullopt) << unknown;
  }
}

}  // namespace
}  // namespace zelnor
