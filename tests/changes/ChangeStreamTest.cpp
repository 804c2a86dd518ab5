#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <mutex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/ChangeStream.h"
#include "tests/changes/Sources.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Unprivileged.h"

namespace zelnor::platform {
namespace {

namespace fs = std::filesystem;

/// Knows the paths it is told to, none of them as they are on disk, and applies nothing.
class PathsView final : public IndexView, public std::enable_shared_from_this<PathsView> {
 public:
  std::set<std::string> paths;

  std::unique_ptr<IndexCursor> open(std::stop_token /*stop*/) override {
    return std::make_unique<Cursor>(shared_from_this());
  }
  std::optional<std::uint64_t> inodeOf(const std::string& path, std::stop_token) override {
    return paths.contains(path) ? std::optional<std::uint64_t>(0) : std::nullopt;
  }
  std::vector<std::string> pathsWithInode(std::uint64_t /*inode*/,
                                          std::stop_token /*stop*/) override {
    return {};
  }
  std::vector<std::string> foldersWithInode(std::uint64_t /*inode*/) override { return {}; }

 private:
  class Cursor final : public IndexCursor {
   public:
    explicit Cursor(std::shared_ptr<PathsView> view)
        : view_(std::move(view)), next_(view_->paths.begin()) {}
    std::optional<IndexEntry> next() override {
      if (next_ == view_->paths.end()) return std::nullopt;
      return IndexEntry{.path = *next_++, .size = -1};
    }
    void seek(std::string_view path) override {
      next_ = view_->paths.lower_bound(std::string(path));
    }

   private:
    std::shared_ptr<PathsView> view_;
    std::set<std::string>::const_iterator next_;
  };
};

class LiveStream : public testing::TestWithParam<ChangeSourceKind> {
 protected:
  LiveStream() {
    fs::create_directories(root.path() + "/root/sub");
    options.roots = {root / "root"};
    options.latency = std::chrono::milliseconds(20);
    options.stateFolder = root.folder("state");
    options.sweepInterval = std::chrono::milliseconds(20);
    options.deepSweepInterval = std::chrono::milliseconds(50);
    options.forcedSource = GetParam();
    options.index = index;
    options.log = [this](const std::string& line) {
      const std::scoped_lock lock(mutex);
      log += line;
      changed.notify_all();
    };
    options.onFollowing = [this](const FollowCount& count) {
      const std::scoped_lock lock(mutex);
      followed = count;
    };
    index->paths = {root / "root/kept"};
    root.file("root/kept");
  }
  ~LiveStream() override {
    if (stream) stream->invalidate();
  }

  void start() {
    stream = createChangeStream(options, [this](std::span<const ChangeEvent> events) {
      const std::scoped_lock lock(mutex);
      for (const auto& event : events) {
        EXPECT_GT(event.identifier, lastIdentifier);
        lastIdentifier = event.identifier;
        seen[event.path] = event.flags;
      }
      changed.notify_all();
    });
    stream->setQueue(&queue);
    ASSERT_TRUE(stream->start());
    ASSERT_TRUE(waitFor([this] { return !log.empty(); }));
  }

  bool waitFor(const std::function<bool()>& condition) {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, std::chrono::seconds(20), condition);
  }
  /// Waits for an event of `name` that has one of these flags.
  bool sees(const std::string& name, std::uint32_t flags) {
    return waitFor([&] {
      const auto found = seen.find(root / ("root/" + name));
      return found != seen.end() && (found->second & flags) != 0;
    });
  }

  void forget() {
    const std::scoped_lock lock(mutex);
    seen.clear();
  }
  /// Gives all there is to the user that `Unprivileged` becomes.
  void giveAway() const {
    if (::geteuid() != 0) return;
    const auto give = [](const std::string& path) {
      ASSERT_EQ(::chown(path.c_str(), test::Unprivileged::kNobody, /*group=*/0), 0);
    };
    give(root.path());
    for (const auto& entry : fs::recursive_directory_iterator(root.path())) give(entry.path());
  }

  static constexpr auto kGone =
      kFSEventStreamEventFlagItemRemoved | kFSEventStreamEventFlagItemRenamed;
  static constexpr auto kThere = kFSEventStreamEventFlagItemIsFile |
                                 kFSEventStreamEventFlagItemIsDir |
                                 kFSEventStreamEventFlagItemIsSymlink;

  test::TemporaryFolder root;
  std::shared_ptr<PathsView> index = std::make_shared<PathsView>();
  ChangeStreamOptions options;
  std::mutex mutex;
  std::condition_variable changed;
  std::map<std::string, std::uint32_t> seen;
  std::uint64_t lastIdentifier = 0;
  std::string log;
  FollowCount followed;
  SerialQueue queue{"test"};
  std::unique_ptr<ChangeStream> stream;
};

TEST_P(LiveStream, ReportsWhatHappensToFilesAndFoldersHoweverDeep) {
  start();
  root.file("root/file", "text");
  EXPECT_TRUE(sees("file", kThere));
  fs::create_directories(root / "root/new/deep/er");
  root.file("root/new/deep/er/file");
  EXPECT_TRUE(sees("new/deep/er/file", kThere));
  root.file("root/new/deep/er/later");
  EXPECT_TRUE(sees("new/deep/er/later", kThere));
  EXPECT_TRUE(sees("new/deep", kFSEventStreamEventFlagItemIsDir));
  fs::remove(root / "root/kept");
  EXPECT_TRUE(sees("kept", kGone));
}

TEST_P(LiveStream, ReportsEveryEntryBelowAFolderThatMoves) {
  index->paths.merge(
      std::set<std::string>{root / "root/sub", root / "root/sub/in", root / "root/sub/in/file"});
  root.file("root/sub/in/file");
  root.file("away/one/two");
  start();
  fs::rename(root / "root/sub", root / "root/moved");
  EXPECT_TRUE(sees("sub/in/file", kGone));
  EXPECT_TRUE(sees("moved/in/file", kThere));
  fs::rename(root / "away", root / "root/arrived");
  EXPECT_TRUE(sees("arrived/one/two", kThere));
  root.file("root/arrived/one/three");
  EXPECT_TRUE(sees("arrived/one/three", kThere));
}

TEST_P(LiveStream, CatchesUpOnStartWithWhatTheIndexLacks) {
  root.file("root/sub/meanwhile");
  index->paths.insert(root / "root/gone");
  start();
  EXPECT_TRUE(sees("sub/meanwhile", kThere));
  EXPECT_TRUE(sees("gone", kGone));
  EXPECT_TRUE(sees("kept", kThere));  // its size differs
}

TEST_P(LiveStream, IsSilentAboutAnUnknownRootsEntriesAndWhatIsOutOfScope) {
  index->paths.clear();
  options.scope.skipsHidden = true;
  options.ownPaths = {root / "root/own.db"};
  start();
  root.file("root/own.db");
  root.file("root/own.db-wal");
  root.file("root/.hidden/x");
  root.file("root/last");
  ASSERT_TRUE(sees("last", kThere));
  const std::scoped_lock lock(mutex);
  if (GetParam() == ChangeSourceKind::sweep)
    return;  // which compares with an index that knows none
  EXPECT_THAT(seen, testing::SizeIs(1));
}

TEST_P(LiveStream, AMissingRootKeepsItsEntriesAndAnotherFolderInItsPlaceIsReported) {
  start();
  fs::rename(root / "root", root / "elsewhere");
  fs::create_directory(root / "root");
  EXPECT_TRUE(waitFor([this] {
    const auto found = seen.find(root / "root");
    return found != seen.end() && found->second == kFSEventStreamEventFlagRootChanged;
  }));
}

TEST_P(LiveStream, ARootThatComesBackIsComparedAndNotReportedAsAnother) {
  start();
  fs::rename(root / "root", root / "elsewhere");
  root.file("elsewhere/meanwhile");
  fs::rename(root / "elsewhere", root / "root");
  EXPECT_TRUE(sees("meanwhile", kThere));
  const std::scoped_lock lock(mutex);
  EXPECT_FALSE(seen.contains(root / "root"));
  EXPECT_FALSE(seen.contains(root / "root/kept") && (seen.at(root / "root/kept") & kGone) != 0);
}

TEST_P(LiveStream, DeliversNothingOnceStopped) {
  start();
  stream->stop();
  const auto before = [this] {
    const std::scoped_lock lock(mutex);
    return seen.size();
  }();
  root.file("root/late");
  bool isDone = false;
  queue.post([&] {
    const std::scoped_lock lock(mutex);
    isDone = true;
    changed.notify_all();
  });
  ASSERT_TRUE(waitFor([&] { return isDone; }));
  const std::scoped_lock lock(mutex);
  EXPECT_EQ(seen.size(), before);
}

TEST_P(LiveStream, SweepsTheFoldersThatExceedTheLimitAndSaysSo) {
  options.watchLimit = 2;
  for (const char* name : {"x", "y", "z"}) root.folder("root/sub/" + std::string(name));
  start();
  root.file("root/sub/z/file");
  EXPECT_TRUE(sees("sub/z/file", kThere));
  const std::scoped_lock lock(mutex);
  EXPECT_EQ(log, "[FSEvents] Following " + std::to_string(followed.live) +
                     " folders live, sweeping " + std::to_string(followed.swept) + ".");
}

TEST_P(LiveStream, NoticesWhenAFolderThatCannotBeEnteredFromTheStartChangesOrOpens) {
  const auto closed = root.folder("root/closed");
  root.file("root/closed/file");
  giveAway();
  const test::Unprivileged unprivileged;
  fs::permissions(closed, fs::perms::owner_read);
  start();
  ASSERT_TRUE(sees("closed", kThere));  // the index does not know it
  forget();
  fs::last_write_time(closed, fs::file_time_type{});
  EXPECT_TRUE(sees("closed",
                   kFSEventStreamEventFlagItemInodeMetaMod | kFSEventStreamEventFlagItemModified));
  fs::permissions(closed, fs::perms::owner_all);
  EXPECT_TRUE(sees("closed/file", kThere));
}

INSTANTIATE_TEST_SUITE_P(EverySource, LiveStream, testing::ValuesIn(test::possibleSources()),
                         test::nameOf);

}  // namespace
}  // namespace zelnor::platform
