#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include <gtest/gtest.h>

#include "platform/linux/changes/EventIdentifiers.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::platform {
namespace {

TEST(EventIdentifiers, GrowByOneAndGoOnWhereTheLastUserStopped) {
  const test::TemporaryFolder folder;
  {
    EventIdentifiers identifiers(folder.path(), /*last=*/0);
    EXPECT_EQ(identifiers.next(), 1U);
    EXPECT_EQ(identifiers.next(), 2U);
  }
  EventIdentifiers identifiers(folder.path(), /*last=*/0);
  EXPECT_EQ(identifiers.next(), 3U);
}

TEST(EventIdentifiers, AreNotUsedAgainAfterAKill) {
  const test::TemporaryFolder folder;
  const auto child = fork();
  if (child == 0) {
    EventIdentifiers identifiers(folder.path(), /*last=*/0);
    for (int i = 0; i < 100'000; ++i) identifiers.next();
    _exit(0);  // no destructor runs
  }
  int status = 0;
  waitpid(child, &status, 0);
  EventIdentifiers identifiers(folder.path(), /*last=*/0);
  EXPECT_GT(identifiers.next(), 100'000U);
}

TEST(EventIdentifiers, OfTwoUsersOfOneFolderDiffer) {
  const test::TemporaryFolder folder;
  EventIdentifiers first(folder.path(), /*last=*/0);
  const auto early = first.next();
  EventIdentifiers second(folder.path(), /*last=*/0);
  EXPECT_GT(second.next(), early);
  EXPECT_NE(first.next(), second.next());
}

TEST(EventIdentifiers, ExceedTheLastOneAlsoWhenTheFileIsLostOrDamaged) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(EventIdentifiers(folder.path(), /*last=*/500).next(), 501U);
  std::ofstream(folder / "event-identifiers", std::ios::trunc) << "garbage";
  EXPECT_GT(EventIdentifiers(folder.path(), /*last=*/0).next(), 501U);
  EXPECT_GT(EventIdentifiers("/nonexistent", /*last=*/700).next(), 700U);
}

}  // namespace
}  // namespace zelnor::platform
