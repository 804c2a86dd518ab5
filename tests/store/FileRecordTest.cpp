#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "store/FileRecord.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor {
namespace {

TEST(FileKind, HasNoCaseForOtherRawValues) {
  EXPECT_EQ(fileKind(0), FileKind::file);
  EXPECT_EQ(fileKind(2), FileKind::symlink);
  EXPECT_FALSE(fileKind(3));
  EXPECT_FALSE(fileKind(-1));
}

TEST(FileRecord, DescribesTheEntryItself) {
  const test::TemporaryFolder folder;
  const auto file = folder.file("a \xff\n.txt", "12345");
  const auto directory = folder.folder("sub");
  ASSERT_EQ(symlink("sub", (folder / "link").c_str()), 0);
  const std::array<timespec, 2> times{timespec{.tv_sec = -2, .tv_nsec = 500'000'000},
                                      timespec{.tv_sec = -2, .tv_nsec = 500'000'000}};
  ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times.data(), 0), 0);

  const auto record = FileRecord::fromPath(file);
  ASSERT_TRUE(record);
  struct stat status{};
  ASSERT_EQ(lstat(file.c_str(), &status), 0);
  EXPECT_EQ(*record, (FileRecord{.id = 0,
                                 .name = "a \xff\n.txt",
                                 .path = file,
                                 .size = 5,
                                 .mtime = -1,  // 1.5 s before 1970, truncated toward zero
                                 .kind = FileKind::file,
                                 .inode = static_cast<std::int64_t>(status.st_ino)}));
  EXPECT_EQ(FileRecord::fromPath(directory)->kind, FileKind::directory);
  EXPECT_EQ(FileRecord::fromPath(directory)->size, 0);
  EXPECT_EQ(FileRecord::fromPath(folder / "link")->kind, FileKind::symlink);
  EXPECT_FALSE(FileRecord::fromPath(folder / "missing"));
}

}  // namespace
}  // namespace zelnor
