#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/SerialQueue.h"
#include "platform/linux/changes/EntryState.h"
#include "platform/linux/changes/EventDelivery.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Unprivileged.h"

namespace zelnor::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Notes what a delivery asks; touched on its queue only, or while nothing is delivered.
class Places final : public PlaceKeeper {
 public:
  bool isInPlace(std::string_view /*path*/) override { return areInPlace; }
  void couldNotLook(const std::string& path) override { notLookedAt.push_back(path); }
  void foundFolder(const std::string& path) override { found.push_back(path); }

  bool areInPlace = true;
  std::vector<std::string> notLookedAt;
  std::vector<std::string> found;
};

/// Knows some files by their paths. A delivery looks up one path after the other: a cursor, which
/// opens the index and reads ahead, is no way to do that.
class Files final : public IndexView {
 public:
  std::unique_ptr<IndexCursor> open(std::stop_token /*stop*/) override {
    ADD_FAILURE() << "a cursor was opened";
    return nullptr;
  }
  std::optional<std::uint64_t> inodeOf(const std::string& path, std::stop_token) override {
    const auto found = inodes.find(path);
    return found == inodes.end() ? std::nullopt : std::optional(found->second);
  }
  std::vector<std::string> pathsWithInode(std::uint64_t inode, std::stop_token) override {
    std::vector<std::string> paths;
    for (const auto& [path, itsInode] : inodes) {
      if (itsInode == inode) paths.push_back(path);
    }
    return paths;
  }
  std::vector<std::string> foldersWithInode(std::uint64_t /*inode*/) override { return {}; }

  std::map<std::string, std::uint64_t> inodes;
};

class EventDeliveryTest : public testing::Test {
 protected:
  EventDeliveryTest() { delivery->start(queue, places); }
  ~EventDeliveryTest() override { delivery->stop(); }

  /// The flags that are delivered for `name`, which was seen to change so; none if nothing is.
  std::optional<std::uint32_t> flagsFor(const std::string& name, std::uint32_t seen) {
    delivery->changed(root / name, seen);
    const auto last = root.file("after " + std::to_string(++markers));
    delivery->changed(last, kFSEventStreamEventFlagItemModified);
    {
      std::unique_lock lock(mutex);
      EXPECT_TRUE(
          arrived.wait_for(lock, std::chrono::seconds(20), [&] { return events.contains(last); }));
    }
    return delivered(name);
  }

  const test::TemporaryFolder root;
  const test::TemporaryFolder state;
  Places places;
  const std::shared_ptr<Files> index = std::make_shared<Files>();
  std::function<void(std::span<const ChangeEvent>)> onBatch;  ///< set before the first change

  /// Makes the file "a", which is called "b" as well; answers its inode number.
  [[nodiscard]] std::uint64_t linkTwice() const {
    root.file("a");
    std::filesystem::create_hard_link(root / "a", root / "b");
    return examine(root / "a").attributes.inode;
  }

  /// The flags that were delivered for `name`; none if nothing was.
  std::optional<std::uint32_t> delivered(const std::string& name) {
    const std::scoped_lock lock(mutex);
    const auto found = events.find(root / name);
    return found == events.end() ? std::nullopt : std::optional(found->second);
  }

 private:
  ChangeStreamOptions options() {
    ChangeStreamOptions options;
    options.latency = std::chrono::milliseconds(1);
    options.stateFolder = state.path();
    options.index = index;
    return options;
  }
  void collect(std::span<const ChangeEvent> batch) {
    if (onBatch) onBatch(batch);
    const std::scoped_lock lock(mutex);
    for (const auto& event : batch) events[event.path] = event.flags;
    arrived.notify_all();
  }

  const StreamScope scope{{root.path()}, {}, {}};
  std::mutex mutex;
  std::condition_variable arrived;
  std::map<std::string, std::uint32_t> events;
  int markers = 0;
  SerialQueue queue{"test"};

 protected:
  const std::shared_ptr<EventDelivery> delivery = std::make_shared<EventDelivery>(
      options(), scope, [this](std::span<const ChangeEvent> batch) { collect(batch); });
};

TEST_F(EventDeliveryTest, WhatAnEntryIsNowCountsNotWhatWasSeen) {
  root.file("there");
  EXPECT_EQ(flagsFor("there", kFSEventStreamEventFlagItemRemoved),
            kFSEventStreamEventFlagItemModified | kFSEventStreamEventFlagItemIsFile);
  EXPECT_EQ(flagsFor("gone", kFSEventStreamEventFlagItemCreated),
            kFSEventStreamEventFlagItemRemoved);
  EXPECT_EQ(flagsFor("moved away", kFSEventStreamEventFlagItemRenamed),
            kFSEventStreamEventFlagItemRenamed);
}

TEST_F(EventDeliveryTest, AFolderWhereAnotherThingWasSeenIsLookedInto) {
  root.folder("seen as folder");
  EXPECT_TRUE(flagsFor("seen as folder", kFSEventStreamEventFlagItemCreated));
  EXPECT_THAT(places.found, IsEmpty());
  for (const auto* name : {"seen as file", "seen to leave"}) root.folder(name);
  EXPECT_TRUE(flagsFor("seen as file",
                       kFSEventStreamEventFlagItemCreated | kFSEventStreamEventFlagItemIsFile));
  EXPECT_TRUE(flagsFor("seen to leave", kFSEventStreamEventFlagItemRemoved));
  EXPECT_THAT(places.found, ElementsAre(root / "seen as file", root / "seen to leave"));
}

TEST_F(EventDeliveryTest, AFileThatChangedAndLostItsNameIsReportedUnderItsOtherNames) {
  constexpr auto kWritten = kFSEventStreamEventFlagItemModified;
  constexpr auto kPermitted = kFSEventStreamEventFlagItemInodeMetaMod;
  constexpr auto kReplaced = kFSEventStreamEventFlagItemRenamed;
  for (const auto* name :
       {"by writing", "by permissions", "by writing what was replaced", "another file", "new"}) {
    root.file(name);
  }
  index->inodes = {{root / "written", 7},
                   {root / "by writing", 7},
                   {root / "another file", 8},
                   {root / "permitted", 9},
                   {root / "by permissions", 9},
                   {root / "new", 10},
                   {root / "by writing what was replaced", 10}};
  EXPECT_EQ(flagsFor("written", kWritten), kFSEventStreamEventFlagItemRemoved);
  EXPECT_TRUE(flagsFor("permitted", kPermitted));
  EXPECT_TRUE(flagsFor("new", kWritten | kReplaced));
  EXPECT_TRUE(flagsFor("never known", kWritten));
  for (const auto* name : {"by writing", "by permissions", "by writing what was replaced"}) {
    EXPECT_TRUE(delivered(name)) << name;
  }
  EXPECT_FALSE(delivered("another file"));
}

TEST_F(EventDeliveryTest, AFolderWhereAFileHadItsOtherNameIsLookedInto) {
  index->inodes = {{root / "gone", 7}, {root / "other", 7}};
  root.folder("other");
  for (const auto* name : {"gone", "something else"}) {
    flagsFor(name, kFSEventStreamEventFlagItemModified);
  }
  EXPECT_THAT(places.found, ElementsAre(root / "other"));
}

TEST_F(EventDeliveryTest, EveryChangeOfAFileIsReportedUnderItsOtherNames) {
  const auto inode = linkTwice();
  index->inodes = {{root / "a", inode}, {root / "b", inode}};
  int times = 0;
  onBatch = [&](std::span<const ChangeEvent> batch) {
    if (std::ranges::count(batch, root / "a", &ChangeEvent::path) == 0) return;
    // Just when "b" waits to be reported because "a" was.
    if (++times == 1) delivery->changed(root / "b", kFSEventStreamEventFlagItemModified);
  };
  for (const auto* name : {"a", "something else", "and more"}) {
    flagsFor(name, kFSEventStreamEventFlagItemModified);
  }
  EXPECT_EQ(times, 2);
}

TEST_F(EventDeliveryTest, AFileThatMayNotBeReadIsReportedUnderItsOtherNamesToo) {
  ::chmod(root.path().c_str(), 0777);
  const test::Unprivileged user;
  const auto inode = linkTwice();
  index->inodes = {{root / "a", inode}, {root / "b", inode}};
  ::chmod((root / "a").c_str(), 0);
  EXPECT_EQ(flagsFor("a", kFSEventStreamEventFlagItemInodeMetaMod),
            kFSEventStreamEventFlagItemRemoved);
  flagsFor("something else", kFSEventStreamEventFlagItemModified);
  EXPECT_EQ(delivered("b"), kFSEventStreamEventFlagItemRemoved);
}

TEST_F(EventDeliveryTest, WhatCannotBeFoundOrLookedAtJustNowIsNotRemoved) {
  places.areInPlace = false;
  EXPECT_EQ(flagsFor("unmounted", kFSEventStreamEventFlagItemRemoved), std::nullopt);
  // A path through too many links cannot be looked at, by any user.
  ASSERT_EQ(symlink("loop", (root / "loop").c_str()), 0);
  EXPECT_EQ(flagsFor("loop/entry", kFSEventStreamEventFlagItemRemoved), std::nullopt);
  EXPECT_THAT(places.notLookedAt, ElementsAre(root / "loop/entry"));
}

}  // namespace
}  // namespace zelnor::platform
