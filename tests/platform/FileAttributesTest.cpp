#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <filesystem>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/FileAttributes.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::platform {
namespace {

using testing::AllOf;
using testing::Field;
using testing::Optional;

TEST(FileAttributes, ModificationTimesAreTruncatedTowardZero) {
  const test::TemporaryFolder folder;
  const auto path = folder.file("f");
  struct Case {
    std::int64_t seconds;
    std::int64_t nanoseconds;
    std::int64_t expected;
  };
  const std::vector<Case> cases{
      {1, 900'000'000, 1}, {0, 0, 0}, {-2, 100'000'000, -1}, {-1, 500'000'000, 0}, {-2, 0, -2}};
  for (const auto& [seconds, nanoseconds, expected] : cases) {
    const timespec time{.tv_sec = seconds, .tv_nsec = nanoseconds};
    const std::array times{time, time};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times.data(), /*flags=*/0), 0);
    EXPECT_THAT(readAttributes(path), Optional(Field(&FileAttributes::mtime, expected)));
  }
}

TEST(FileAttributes, DescribeTheEntryItself) {
  const test::TemporaryFolder folder;
  folder.file("d/f", "12345");
  std::filesystem::create_symlink("d", folder / "link");
  const auto is = [](std::int64_t size, bool isDirectory, bool isSymlink) {
    return Optional(AllOf(Field(&FileAttributes::size, size),
                          Field(&FileAttributes::isDirectory, isDirectory),
                          Field(&FileAttributes::isSymlink, isSymlink)));
  };
  EXPECT_THAT(readAttributes(folder / "d/f"), is(/*size=*/5, false, false));
  EXPECT_THAT(readAttributes(folder / "d"), is(/*size=*/0, /*isDirectory=*/true, false));
  EXPECT_THAT(readAttributes(folder / "link"), is(/*size=*/1, false, /*isSymlink=*/true));
  for (const auto& path : {folder / "missing", folder / "d/f/x", std::string(),
                           folder / "d" + std::string("\0f", 2)}) {
    EXPECT_FALSE(readAttributes(path)) << path;
  }
}

}  // namespace
}  // namespace zelnor::platform
