#include <gtest/gtest.h>

#include "platform/linux/changes/MountTable.h"
#include "platform/linux/changes/StreamScope.h"

namespace zelnor::platform {
namespace {

TEST(ScopeFilter, LeavesOutWhatAScanLeavesOut) {
  const ScopeFilter filter{.excludedPrefixes = {"/r/no", "/r/in/"},
                           .skipsHidden = true,
                           .skipsPackageContents = true,
                           .skipsLinks = true};
  struct Case {
    const char* path;
    EntryKind kind;
    bool isIncluded;
  };
  for (const auto& [path, kind, isIncluded] :
       {Case{"/r/a", EntryKind::file, true}, Case{"/r", EntryKind::folder, false},
        Case{"/rest", EntryKind::file, false}, Case{"/r/no", EntryKind::folder, false},
        Case{"/r/nothing", EntryKind::file, false}, Case{"/r/in", EntryKind::folder, true},
        Case{"/r/in/a", EntryKind::file, false}, Case{"/r/.h", EntryKind::file, false},
        Case{"/r/.h/a", EntryKind::file, false}, Case{"/r/p.app", EntryKind::folder, true},
        Case{"/r/p.app/a", EntryKind::file, false}, Case{"/r/l", EntryKind::link, false},
        Case{"/r/l", EntryKind::unknown, true}}) {
    EXPECT_EQ(filter.includes("/r", path, kind), isIncluded) << path;
  }
  EXPECT_TRUE(filter.enters("/r", "/r/d"));
  EXPECT_FALSE(filter.enters("/r", "/r/in"));
  EXPECT_FALSE(filter.enters("/r", "/r/p.app"));
  EXPECT_TRUE(filter.enters("/r/p.app", "/r/p.app"));
  EXPECT_TRUE(filter.includes("/r/.h", "/r/.h/a", EntryKind::file));
}

TEST(StreamScope, IsSilentAboutOwnFilesAndDropsRootsThatAreExcluded) {
  const StreamScope scope({"/home/", "/dev", "/home"}, {.excludedPrefixes = {"/dev"}},
                          {"/home/data/index.sqlite", "/home/own/"});
  EXPECT_EQ(scope.roots(), std::vector<std::string>{"/home"});
  for (const char* path : {"/home/data/index.sqlite", "/home/data/index.sqlite-wal", "/home/own",
                           "/home/own/any/thing"}) {
    EXPECT_FALSE(scope.includes(path, EntryKind::file)) << path;
  }
  for (const char* path : {"/home/data", "/home/data/index.sqlite-else", "/home/owner"}) {
    EXPECT_TRUE(scope.includes(path, EntryKind::file)) << path;
  }
}

TEST(MountTable, ReadsMountPointsWithTheirEscapes) {
  const auto mounts = MountTable::parse(
      "1 0 8:1 / / rw - ext4 /dev/sda rw\n"
      "2 1 8:2 / /home rw - ext4 /dev/sdb rw\n"
      "3 2 8:3 /a /home/my\\040stick\\134x rw shared:1 - vfat /dev/sdc rw\n");
  EXPECT_EQ(mounts.covering("/home/u"), "/home");
  EXPECT_EQ(mounts.covering("/homes"), "");
  EXPECT_TRUE(mounts.isMountPoint("/home/my stick\\x"));
  EXPECT_EQ(mounts.below("/home"), std::vector<std::string>{"/home/my stick\\x"});
}

}  // namespace
}  // namespace zelnor::platform
