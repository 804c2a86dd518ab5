#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/FileAttributes.h"
#include "platform/linux/changes/Reconciler.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct Row {
  FileAttributes attributes;
};

class MapCursor final : public IndexCursor {
 public:
  explicit MapCursor(const std::map<std::string, Row>& rows) : rows_(rows), next_(rows.begin()) {}
  std::optional<IndexEntry> next() override {
    if (next_ == rows_.end()) return std::nullopt;
    const auto& [path, row] = *next_++;
    const auto& found = row.attributes;
    return IndexEntry{.path = path,
                      .size = found.size,
                      .mtime = found.mtime,
                      .inode = found.inode,
                      .kind = found.isSymlink     ? IndexEntry::Kind::link
                              : found.isDirectory ? IndexEntry::Kind::folder
                                                  : IndexEntry::Kind::file};
  }
  void seek(std::string_view path) override { next_ = rows_.lower_bound(std::string(path)); }

 private:
  const std::map<std::string, Row>& rows_;
  std::map<std::string, Row>::const_iterator next_;
};

class ReconcilerOnDisk : public testing::Test, private ReconcileVisitor {
 protected:
  ReconcilerOnDisk() {
    for (const char* name : {"a", "a.txt", "b/x", "b/y/z", "b-c", "d.app/inside", ".h/x"}) {
      root.file(name, "text");
    }
    symlink("a", (root / "link").c_str());
  }

  /// Takes all that is on disk into the index.
  void scan() {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root.path())) {
      rows[entry.path()] = {*readAttributes(entry.path())};
    }
  }
  void compare(Reconciler::Depth depth = Reconciler::Depth::tree) {
    different.clear();
    listed.clear();
    found.clear();
    unlisted.clear();
    const StreamScope scope({root.path()}, filter, {});
    MapCursor cursor(rows);
    Reconciler(scope, *this, {}).compare(root.path(), &cursor, depth);
    different.erase("");  // the root itself
  }

  /// What is told of `folder` if it was at `former` before, in order.
  std::vector<std::string> reportMoved(const std::string& folder, const std::string& former) {
    inOrder.clear();
    const StreamScope scope({root.path()}, filter, {});
    MapCursor cursor(rows);
    Reconciler(scope, *this, {}).reportMoved(root / folder, root / former, cursor);
    return inOrder;
  }

  const test::TemporaryFolder root;
  ScopeFilter filter;
  std::map<std::string, Row> rows;
  std::set<std::string> different;
  std::vector<std::string> inOrder;
  std::vector<std::string> listed;
  std::vector<std::string> found;
  std::vector<std::string> unlisted;

 private:
  [[nodiscard]] std::string shorten(const std::string& path) const {
    return path == root.path() ? "" : path.substr(root.path().size() + 1);
  }
  void willList(const std::string& folder) override { listed.push_back(shorten(folder)); }
  void differs(std::string path, std::uint32_t /*flags*/) override {
    different.insert(shorten(path));
    inOrder.push_back(shorten(path));
  }
  void couldNotList(const std::string& folder) override { unlisted.push_back(shorten(folder)); }
  void foundName(const std::string& /*path*/, std::uint64_t /*inode*/) override {}
  void foundFolder(const std::string& path) override { found.push_back(shorten(path)); }
};

TEST_F(ReconcilerOnDisk, FindsNoDifferenceWhereThereIsNone) {
  scan();
  compare();
  EXPECT_THAT(different, IsEmpty());
  EXPECT_THAT(listed, ElementsAre("", ".h", "b", "b/y", "d.app"));
}

TEST_F(ReconcilerOnDisk, FindsWhatCameWentAndChangedInByteOrderOfWholePaths) {
  scan();
  root.file("a.txt", "longer text");
  root.file("b/new");
  std::filesystem::remove_all(root / "b/y");
  std::filesystem::remove(root / "link");
  symlink("elsewhere", (root / "link").c_str());
  compare();
  EXPECT_THAT(different, testing::IsSupersetOf({"a.txt", "b/new", "b/y", "b/y/z", "link"}));
  EXPECT_THAT(different, testing::Not(testing::Contains(testing::AnyOf("a", "b/x", "b-c"))));
}

TEST_F(ReconcilerOnDisk, TellsOfAFolderThatMovedEntryByEntryInBothPlaces) {
  scan();
  std::filesystem::rename(root / "b", root / "moved");
  root.file("moved/new");
  std::filesystem::remove(root / "moved/x");
  EXPECT_THAT(reportMoved("moved", "b"),
              ElementsAre("moved", "moved/new", "b/x", "b/y", "moved/y", "b/y/z", "moved/y/z"));
  EXPECT_THAT(listed, ElementsAre("moved", "moved/y"));

  filter.excludedPrefixes = {root / "b/y"};
  EXPECT_THAT(reportMoved("moved", "b"),
              ElementsAre("moved", "moved/new", "b/x", "moved/y", "moved/y/z"));
}

TEST_F(ReconcilerOnDisk, AFolderThatBecameAFileLeavesNothingBelow) {
  scan();
  std::filesystem::remove_all(root / "b");
  root.file("b", "now a file");
  compare();
  EXPECT_THAT(different, UnorderedElementsAre("b", "b/x", "b/y", "b/y/z"));
}

TEST_F(ReconcilerOnDisk, WhatIsOutOfScopeIsNeitherMissedNorFound) {
  scan();
  std::filesystem::remove_all(root / ".h");
  std::filesystem::remove_all(root / "d.app/inside");
  std::filesystem::remove(root / "link");
  filter = {.excludedPrefixes = {},
            .skipsHidden = true,
            .skipsPackageContents = true,
            .skipsLinks = true};
  rows[root / "d.app"] = {*readAttributes(root / "d.app")};
  compare();
  EXPECT_THAT(different, IsEmpty());
  EXPECT_THAT(listed, ElementsAre("", "b", "b/y", "d.app"));
}

TEST_F(ReconcilerOnDisk, SaysWhichFoldersItCouldNotLookInto) {
  scan();
  ::chmod(root.path().c_str(), 0755);
  ::chmod((root / "b/y").c_str(), 0);
  const auto user = ::geteuid();
  constexpr uid_t kNobody = 65534;
  // Root may look into any folder.
  ASSERT_EQ(::seteuid(user == 0 ? kNobody : user), 0);
  compare();
  ASSERT_EQ(::seteuid(user), 0);
  ::chmod((root / "b/y").c_str(), 0700);
  EXPECT_THAT(unlisted, ElementsAre("b/y"));
}

TEST_F(ReconcilerOnDisk, OfChildrenAloneComparesNothingBelowThoseThatAreThere) {
  scan();
  root.file("b/new");
  root.file("c/new");
  std::filesystem::remove_all(root / "d.app");
  compare(Reconciler::Depth::children);
  different.erase("b");  // its time may have changed
  EXPECT_THAT(different, UnorderedElementsAre("c", "d.app", "d.app/inside"));
  EXPECT_THAT(listed, ElementsAre(""));
  EXPECT_THAT(found, ElementsAre("c"));
}

}  // namespace
}  // namespace zelnor::platform
