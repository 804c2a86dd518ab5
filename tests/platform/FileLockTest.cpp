#include <future>
#include <optional>
#include <system_error>

#include <gtest/gtest.h>

#include "platform/FileLock.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::platform {
namespace {

TEST(FileLock, HasOneHolderAtATime) {
  const test::TemporaryFolder folder;
  const auto path = folder / "lock";
  auto held = FileLock::tryAcquire(path);
  ASSERT_TRUE(held);
  EXPECT_FALSE(FileLock::tryAcquire(path));
  auto waiting = std::async(std::launch::async, [&] {
    const auto lock = FileLock::acquire(path);
    return !FileLock::tryAcquire(path);
  });
  held.reset();
  EXPECT_TRUE(waiting.get());
  EXPECT_TRUE(FileLock::tryAcquire(path));
}

TEST(FileLock, AFileThatCannotBeCreatedIsAnError) {
  const test::TemporaryFolder folder;
  EXPECT_THROW(FileLock::tryAcquire(folder / "missing/lock"), std::system_error);
  EXPECT_THROW(FileLock::acquire(folder.path()), std::system_error);
}

}  // namespace
}  // namespace zelnor::platform
