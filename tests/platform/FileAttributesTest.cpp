#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>

#include <gtest/gtest.h>

#include "platform/FileAttributes.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::platform {
namespace {

TEST(FileAttributes, ModificationTimesAreTruncatedTowardZero) {
  const test::TemporaryFolder folder;
  const auto path = folder.file("f");
  struct Case {
    timespec time;
    std::int64_t expected;
  };
  for (const auto& [time, expected] :
       {Case{{1, 900'000'000}, 1}, Case{{0, 0}, 0}, Case{{-2, 100'000'000}, -1},
        Case{{-1, 500'000'000}, 0}, Case{{-2, 0}, -2}}) {
    const timespec times[] = {time, time};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    EXPECT_EQ(readAttributes(path)->mtime, expected) << time.tv_sec << "s " << time.tv_nsec << "ns";
  }
}

TEST(FileAttributes, DescribeTheEntryItself) {
  const test::TemporaryFolder folder;
  folder.file("d/f", "12345");
  std::filesystem::create_symlink("d", folder / "link");
  EXPECT_EQ(readAttributes(folder / "d/f")->size, 5);
  EXPECT_EQ(readAttributes(folder / "d")->size, 0);
  EXPECT_TRUE(readAttributes(folder / "d")->isDirectory);
  const auto link = readAttributes(folder / "link");
  EXPECT_TRUE(link->isSymlink && !link->isDirectory);
  EXPECT_EQ(link->size, 1);
  for (const auto& path : {folder / "missing", folder / "d/f/x", std::string(),
                           folder / "d" + std::string("\0f", 2)}) {
    EXPECT_FALSE(readAttributes(path)) << path;
  }
}

}  // namespace
}  // namespace zelnor::platform
