#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/DirectoryEnumerator.h"
#include "tests/platform/DeepTree.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Unprivileged.h"

namespace zelnor::platform {
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::ElementsAreArray;
using Entry = DirectoryEnumerator::Entry;
using Paths = std::vector<std::string>;

/// The paths below `root`, relative to it; `visit` sees each entry as it comes.
Paths walk(const std::string& root, DirectoryEnumerator::Options options = {},
           const std::function<void(DirectoryEnumerator&, const Entry&)>& visit = {}) {
  Paths paths;
  auto enumerator = DirectoryEnumerator::open(root, options);
  while (const auto entry = enumerator ? enumerator->next() : std::nullopt) {
    paths.emplace_back(entry->path.substr(root.size() + 1));
    EXPECT_TRUE(entry->path.ends_with(entry->name));
    if (visit) visit(*enumerator, *entry);
  }
  return paths;
}

TEST(DirectoryEnumerator, EntriesComeInByteOrderOfWholePaths) {
  const TemporaryFolder tree;
  for (const auto* name : {"a/b", "a/\xff", "a.txt", "a-b/x", "a-b-c/y", "a-b.d", "a0", "B/q"})
    tree.file(name);
  EXPECT_THAT(walk(tree.path()), ElementsAre("B", "B/q", "a", "a-b", "a-b-c", "a-b-c/y", "a-b.d",
                                             "a-b/x", "a.txt", "a/b", "a/\xff", "a0"));
}

TEST(DirectoryEnumerator, NamesAreBytes) {
  const TemporaryFolder tree;
  Paths names{"\xff\xfe", "line\nbreak",         "quote'\"", " ",
              "中文",     std::string(255, 'n'), "-rf",      "*"};
  for (const auto& name : names) tree.file(name);
  std::ranges::sort(names);
  EXPECT_THAT(walk(tree.path()), ElementsAreArray(names));
}

/// Fills `folder` with random names, some of them folders that are filled in turn.
void fill(const fs::path& folder, std::mt19937& random, int depth) {
  constexpr std::string_view kBytes = "ab-./ \x01\xff\nZ0";
  const auto below = [&](std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
  };
  for (auto count = below(9); count > 0; --count) {
    std::string name;
    for (auto length = 1 + below(4); length > 0; --length) name += kBytes.at(below(kBytes.size()));
    std::ranges::replace(name, '/', '_');
    const auto path = folder / name;
    if (name == "." || name == ".." || fs::exists(fs::symlink_status(path))) continue;
    if (below(5) == 0) {
      fs::create_symlink("..", path);
    } else if (depth > 0 && below(2) == 0) {
      fs::create_directory(path);
      fill(path, random, depth - 1);
    } else {
      std::ofstream(path) << name;
    }
  }
}

TEST(DirectoryEnumerator, FindsWhatAnotherWalkFinds) {
  const auto seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const TemporaryFolder tree;
  for (int i = 0; i < 20; ++i) fill(tree.folder(std::to_string(i)), random, /*depth=*/5);
  Paths expected;
  for (const auto& entry : fs::recursive_directory_iterator(tree.path())) {
    expected.push_back(entry.path().string().substr(tree.path().size() + 1));
  }
  std::ranges::sort(expected);
  const auto hasAttributesOfItsPath = [](DirectoryEnumerator&, const Entry& entry) {
    struct stat status{};
    ASSERT_EQ(lstat(std::string(entry.path).c_str(), &status), 0);
    EXPECT_EQ(entry.attributes.size, S_ISDIR(status.st_mode) ? 0 : status.st_size);
    EXPECT_EQ(entry.attributes.mtime, status.st_mtim.tv_sec);
    EXPECT_EQ(entry.attributes.inode, status.st_ino);
    EXPECT_EQ(entry.attributes.device, status.st_dev);
    EXPECT_EQ(entry.attributes.isDirectory, S_ISDIR(status.st_mode));
    EXPECT_EQ(entry.attributes.isSymlink, S_ISLNK(status.st_mode));
  };
  EXPECT_THAT(walk(tree.path(), {}, hasAttributesOfItsPath), ElementsAreArray(expected));
}

TEST(DirectoryEnumerator, OptionsLeaveOutHiddenEntriesAndPackageContents) {
  const TemporaryFolder tree;
  for (const auto* name : {".d/x", ".h", "X.app/in/f", "n/.h", "n/f", "no.app"}) tree.file(name);
  EXPECT_THAT(walk(tree.path(), {.skipsHiddenFiles = true}),
              ElementsAre("X.app", "X.app/in", "X.app/in/f", "n", "n/f", "no.app"));
  EXPECT_THAT(walk(tree.path(), {.skipsPackageDescendants = true}),
              ElementsAre(".d", ".d/x", ".h", "X.app", "n", "n/.h", "n/f", "no.app"));
  EXPECT_THAT(walk(tree / "X.app", {.skipsPackageDescendants = true}), ElementsAre("in", "in/f"));
  EXPECT_THAT(walk(tree / ".d", {.skipsHiddenFiles = true}), ElementsAre("x"));
}

TEST(DirectoryEnumerator, SkippingDescendantsConcernsTheLastEntryOnly) {
  const TemporaryFolder tree;
  for (const auto* name : {"a/x", "a.d/x", "b", "c/x"}) tree.file(name);
  const auto skip = [](const std::string& skipped) {
    return [skipped](DirectoryEnumerator& walking, const Entry& entry) {
      if (entry.name == skipped) walking.skipDescendants();
    };
  };
  EXPECT_THAT(walk(tree.path(), {}, skip("a")), ElementsAre("a", "a.d", "a.d/x", "b", "c", "c/x"));
  EXPECT_THAT(walk(tree.path(), {}, skip("a.d")), ElementsAre("a", "a.d", "a/x", "b", "c", "c/x"));
  EXPECT_THAT(walk(tree.path(), {}, skip("b")),
              ElementsAre("a", "a.d", "a.d/x", "a/x", "b", "c", "c/x"));
}

TEST(DirectoryEnumerator, OnlyARootThatIsALinkIsFollowed) {
  const TemporaryFolder tree;
  tree.file("real/f");
  fs::create_symlink(".", tree / "real/loop");
  fs::create_symlink("real", tree / "link");
  fs::create_symlink("nowhere", tree / "real/dangling");
  EXPECT_THAT(walk(tree / "link"), ElementsAre("dangling", "f", "loop"));
}

TEST(DirectoryEnumerator, OpensFoldersOnly) {
  const TemporaryFolder tree;
  for (const auto& path : {tree.file("f"), tree / "missing", std::string(), std::string("/proc")}) {
    EXPECT_FALSE(DirectoryEnumerator::open(path, {})) << path;
  }
  tree.file("d/x");
  auto enumerator = DirectoryEnumerator::open(tree / "d//", {});
  ASSERT_TRUE(enumerator);
  const auto first = enumerator->next();
  EXPECT_EQ(first ? first->path : "", tree / "d/x");
}

TEST(DirectoryEnumerator, WhatVanishesMeanwhileIsPassedOver) {
  const TemporaryFolder tree;
  for (const auto* name : {"a", "b", "c/x", "d"}) tree.file(name);
  const auto paths = walk(tree.path(), {}, [&](DirectoryEnumerator&, const Entry& entry) {
    if (entry.name == "a") fs::remove(tree / "b");
    if (entry.name == "c") fs::remove_all(tree / "c");
  });
  EXPECT_THAT(paths, ElementsAre("a", "c", "d"));
}

TEST(DirectoryEnumerator, PermissionsDecideWhatIsReadable) {
  const TemporaryFolder foreign;
  fs::permissions(foreign.path(), fs::perms::all);
  fs::permissions(foreign.file("closed"), fs::perms::owner_all);
  foreign.file("open");
  const test::Unprivileged user;
  const TemporaryFolder own;
  fs::permissions(own.file("closed"), fs::perms::none);
  fs::permissions(own.file("listable/f").substr(0, own.path().size() + 9), fs::perms::owner_read);
  fs::permissions(own.file("locked/f").substr(0, own.path().size() + 7), fs::perms::none);
  fs::create_symlink("closed", own / "link");
  own.file("open");
  Paths unreadable;
  const auto note = [&](DirectoryEnumerator&, const Entry& entry) {
    if (!entry.isReadable) unreadable.emplace_back(entry.name);
  };
  EXPECT_THAT(walk(own.path(), {}, note),
              ElementsAre("closed", "link", "listable", "locked", "open"));
  EXPECT_THAT(unreadable, ElementsAre("closed", "locked"));
  fs::permissions(own / "listable", fs::perms::owner_all);
  fs::permissions(own / "locked", fs::perms::owner_all);
  if (getuid() != 0) GTEST_SKIP() << "files of another user need root";
  unreadable.clear();
  EXPECT_THAT(walk(foreign.path(), {}, note), ElementsAre("closed", "open"));
  EXPECT_THAT(unreadable, ElementsAre("closed"));
}

TEST(DirectoryEnumerator, NeitherDepthNorDescriptorsLimitAWalk) {
  constexpr std::size_t kDepth = 2'100;
  const TemporaryFolder folder;
  const test::DeepTree tree(folder.path(), kDepth);
  for (const auto descriptors : {rlim_t{40}, rlim_t{1024}}) {
    const test::ResourceLimit limit(RLIMIT_NOFILE, descriptors);
    const auto paths = walk(folder.path());
    EXPECT_EQ(paths.size(), 2 * kDepth);
    EXPECT_TRUE(std::ranges::is_sorted(paths));
  }
  const auto deepest = tree.folder(kDepth - 1);
  EXPECT_THAT(walk(deepest), ElementsAre("d", "z"));
  EXPECT_TRUE(readAttributes(deepest));
  EXPECT_FALSE(readAttributes(deepest + "/z/missing"));
}

TEST(DirectoryEnumerator, MovingAFolderAwayLosesNothingBesideIt) {
  constexpr std::size_t kDepth = 400;
  constexpr std::size_t kMoved = 150;
  const TemporaryFolder folder;
  const test::DeepTree tree(folder.folder("root"), kDepth);
  const auto place = tree.folder(kMoved);
  auto paths = walk(folder.path(), {}, [&](DirectoryEnumerator&, const Entry& entry) {
    if (entry.path == tree.folder(kDepth)) fs::rename(place, folder / "moved");
  });
  fs::rename(folder / "moved", place);
  std::ranges::sort(paths);
  for (std::size_t level = 0; level < kMoved; ++level) {
    const auto path = (tree.folder(level) + "/z").substr(folder.path().size() + 1);
    EXPECT_TRUE(std::ranges::binary_search(paths, path)) << level;
  }
}

/// Something mounted as long as this lives.
class Mount {
 public:
  Mount(const std::string& source, std::string target, const char* type, unsigned long flags)
      : target_(std::move(target)),
        isMounted_(mount(source.c_str(), target_.c_str(), type, flags, nullptr) == 0) {}
  Mount(const Mount&) = delete;
  Mount& operator=(const Mount&) = delete;
  ~Mount() {
    if (isMounted_) umount2(target_.c_str(), MNT_DETACH);
  }
  explicit operator bool() const { return isMounted_; }

 private:
  std::string target_;
  bool isMounted_;
};

TEST(DirectoryEnumerator, EntersMountsUnlessTheyLoopOrArePseudoFileSystems) {
  const TemporaryFolder tree;
  const TemporaryFolder elsewhere;
  elsewhere.file("inside");
  tree.file("d/f");
  const Mount other(elsewhere.path(), tree.folder("other"), nullptr, MS_BIND);
  const Mount loop(tree.path(), tree.folder("d/loop"), nullptr, MS_BIND);
  const Mount proc("proc", tree.folder("proc"), "proc", 0);
  const Mount memory("tmpfs", tree.folder("tmp"), "tmpfs", 0);
  if (!other || !loop || !proc || !memory) GTEST_SKIP() << "mounting needs root";
  tree.file("tmp/in memory");
  EXPECT_THAT(walk(tree.path()), ElementsAre("d", "d/f", "d/loop", "other", "other/inside", "proc",
                                             "tmp", "tmp/in memory"));
}

}  // namespace
}  // namespace zelnor::platform
