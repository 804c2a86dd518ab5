#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <future>
#include <mutex>
#include <optional>
#include <random>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "indexer/FileSystemScanner.h"
#include "platform/ChangeStream.h"
#include "platform/linux/changes/EntryState.h"
#include "platform/linux/changes/Reconciler.h"
#include "tasks/ThreadPool.h"
#include "tests/changes/LiveRows.h"
#include "tests/changes/Sources.h"
#include "tests/support/HardTree.h"
#include "tests/support/MainThread.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Unprivileged.h"
#include "tests/torture/Operations.h"
#include "tests/torture/Walk.h"

// One walk for two: a scan that fills the index tells a stream of the folders that it comes to, and
// the stream tells what happens behind the scan's back.

namespace zelnor::platform {
namespace {

namespace fs = std::filesystem;
using test::LiveRows;
using test::Operations;

/// Passes on what a walk tells, and does something before that; with a folder also after it.
class Meddler final : public FolderVisitor {
 public:
  Meddler(FolderVisitor& next, std::function<void(const std::string&)> meddle)
      : next_(next), meddle_(std::move(meddle)) {}
  void willList(const std::string& folder) override {
    meddle_(folder);
    next_.willList(folder);
    meddle_(folder);
  }
  void couldNotList(const std::string& folder) override {
    meddle_("");
    next_.couldNotList(folder);
  }
  void foundName(const std::string& path, std::uint64_t inode) override {
    meddle_("");
    next_.foundName(path, inode);
  }

 private:
  FolderVisitor& next_;
  std::function<void(const std::string&)> meddle_;
};

/// Notes what it is told.
class Noter final : public ReconcileVisitor {
 public:
  std::vector<std::string> listed;
  std::vector<std::string> unlisted;
  std::vector<std::string> named;

  void willList(const std::string& folder) override { listed.push_back(folder); }
  void couldNotList(const std::string& folder) override { unlisted.push_back(folder); }
  void foundName(const std::string& path, std::uint64_t /*inode*/) override {
    named.push_back(path);
  }
  void differs(std::string /*path*/, std::uint32_t /*flags*/) override {}
  void foundFolder(const std::string& /*path*/) override {}
};

/// Works as a user for whom permissions count, unless the source takes a privileged one.
class WalkedStream : public testing::TestWithParam<ChangeSourceKind> {
 protected:
  WalkedStream() {
    for (const char* name : {"one", "two", "outside", "state"}) base.folder(name);
    options.roots = roots;
    options.latency = std::chrono::milliseconds(10);
    options.stateFolder = base / "state";
    options.sweepInterval = std::chrono::milliseconds(20);
    options.deepSweepInterval = std::chrono::milliseconds(50);
    options.forcedSource = GetParam();
    options.index = index;
    options.log = [this](const std::string& line) {
      const std::scoped_lock lock(logMutex);
      log.push_back(line);
    };
  }
  ~WalkedStream() override {
    if (stream) stream->invalidate();
    test::removeTree(base.path());
  }

  void create() {
    stream = createChangeStream(
        options, [view = index](std::span<const ChangeEvent> events) { view->apply(events); });
    stream->setQueue(&queue);
  }
  void scan(const std::shared_ptr<FolderVisitor>& visitor) {
    const IndexConfiguration config{.excludedPaths = options.scope.excludedPrefixes,
                                    .skipHiddenFiles = options.scope.skipsHidden,
                                    .skipPackageContents = options.scope.skipsPackageContents,
                                    .skipSymlinks = options.scope.skipsLinks};
    const auto scan = FileSystemScanner{}.scan(roots, config, {}, pool.executor(), visitor);
    main.await(take(scan.stream));
  }
  tasks::Async<void> take(std::shared_ptr<FileSystemScanner::Stream> batches) {
    while (const auto batch = co_await batches->next()) {
      for (const auto& record : *batch) index->add(record);
    }
  }
  /// Scans while the stream listens; `meddle` runs before and after each folder.
  void scanListening(std::function<void(const std::string&)> meddle) {
    create();
    ASSERT_TRUE(stream->listen());
    scan(std::make_shared<Meddler>(*stream, std::move(meddle)));
  }

  /// Starts the stream; answers what it says of the folders once it follows them.
  std::string lineAfterStart() {
    EXPECT_TRUE(stream->start());
    std::string line;
    EXPECT_TRUE(index->waitFor([&] {
      const std::scoped_lock lock(logMutex);
      if (!log.empty()) line = std::exchange(log, {}).front();
      return !line.empty();
    }));
    return line;
  }

  /// What the index has otherwise than the disk once it has had the time. Files that changed
  /// unseen do not count.
  std::string differenceLeft(const std::set<std::uint64_t>& unseen = {}) {
    std::string left;
    index->waitFor([&] {
      const auto disk = test::Walk::of(roots);
      auto rows = index->rows();
      for (const auto& [path, row] : disk.rows) {
        if (unseen.contains(static_cast<std::uint64_t>(row.inode)))
          rows.insert_or_assign(path, row);
      }
      std::erase_if(rows, [&](const auto& entry) {
        const auto inode = examine(entry.first).attributes.inode;
        return !disk.rows.contains(entry.first) && unseen.contains(inode);
      });
      left = test::difference(disk, rows, {});
      return left.empty();
    });
    return left;
  }

  const std::optional<test::Unprivileged> user =
      GetParam() == ChangeSourceKind::fileSystemMark
          ? std::nullopt
          : std::optional<test::Unprivileged>(std::in_place);
  const test::TemporaryFolder base;
  const std::vector<std::string> roots{base / "one", base / "two"};
  ChangeStreamOptions options;
  const std::shared_ptr<LiveRows> index = std::make_shared<LiveRows>();
  std::mutex logMutex;
  std::vector<std::string> log;
  test::MainThread main;
  tasks::ThreadPool pool{1};
  SerialQueue queue{"test"};
  std::unique_ptr<ChangeStream> stream;
};

TEST_P(WalkedStream, TellsAfterItsStartWhatHappenedAtAnyMomentOfTheWalk) {
  const auto* const given = std::getenv("ZELNOR_TEST_SEED");
  const auto first = given != nullptr ? std::strtoull(given, nullptr, 10) : std::random_device()();
  constexpr int kTrees = 6;
  for (auto seed = first; seed < first + kTrees; ++seed) {
    SCOPED_TRACE("ZELNOR_TEST_SEED=" + std::to_string(seed));
    Operations operations(seed, roots, base / "outside");
    const auto run = [&operations](int count) {
      while (count-- > 0) operations.runOne();
    };
    run(/*count=*/200);
    index->clear();
    if (operations.pick(3) == 0) options.maxCollected = 20;
    if (operations.pick(3) == 0) options.watchLimit = 10;
    scanListening([&](const std::string&) { run(operations.pick(3)); });
    run(operations.pick(20));
    ASSERT_TRUE(stream->start());
    run(operations.pick(20));
    ASSERT_EQ(differenceLeft(operations.changedUnseen()), "");
    stream->invalidate();
    options.maxCollected = ChangeStreamOptions().maxCollected;
    options.watchLimit.reset();
    for (const auto& root : roots) test::removeTree(root);
    for (const auto& root : roots) fs::create_directory(root);
  }
}

TEST_P(WalkedStream, TellsOfFoldersThatMovedOrWentBehindTheWalk) {
  for (const char* name : {"one/a/deep/file", "one/b/deep/file", "one/c/file", "one/d/deep/file",
                           "two/p/file", "two/q/deep/file"}) {
    base.file(name);
  }
  // The walk is at the second root: it has been everywhere in the first.
  scanListening([&, isDone = false](const std::string& folder) mutable {
    if (folder != base / "two" || std::exchange(isDone, true)) return;
    fs::rename(base / "one/a", base / "two/from behind");
    fs::rename(base / "two/q", base / "one/to behind");
    base.file("one/to behind/deep/later");
    fs::rename(base / "one/b", base / "outside/b");
    fs::remove_all(base / "one/c");
    fs::rename(base / "one/d", base / "one/e");
    base.file("one/d/another");
  });
  EXPECT_TRUE(index->rows().contains(base / "one/b/deep/file"));
  ASSERT_TRUE(stream->start());
  EXPECT_EQ(differenceLeft(), "");
  base.file("one/to behind/deep/after the start");
  base.file("two/from behind/deep/after the start");
  EXPECT_EQ(differenceLeft(), "");
}

TEST_P(WalkedStream, TellsOfAFolderThatWasClosedJustWhileTheWalkCameToIt) {
  if (!user) GTEST_SKIP() << "may look into any folder";
  base.file("one/closed/file");
  int times = 0;
  scanListening([&](const std::string& folder) {
    // Closed once it is followed, and open again before the walk tells of the next.
    const bool isClosing = folder == base / "one/closed" && ++times == 2;
    fs::permissions(base / "one/closed", isClosing ? fs::perms::none : fs::perms::owner_all);
  });
  EXPECT_FALSE(index->rows().contains(base / "one/closed/file"));
  ASSERT_TRUE(stream->start());
  EXPECT_EQ(differenceLeft(), "");
}

TEST_P(WalkedStream, TellsOfALinkThatChangesUnderAllItsNames) {
  fs::create_symlink("nowhere", base / "one/link");
  fs::create_hard_link(base / "one/link", base / "two/other");
  scanListening([](const std::string&) {});
  ASSERT_TRUE(stream->start());
  const std::array<timespec, 2> times{timespec{.tv_sec = 1, .tv_nsec = 0}, timespec{}};
  ASSERT_EQ(::utimensat(AT_FDCWD, (base / "two/other").c_str(), times.data(), AT_SYMLINK_NOFOLLOW),
            0);
  EXPECT_EQ(differenceLeft(), "");
}

TEST_P(WalkedStream, TellsOfAFileThatChangedByANameThatTheWalkHadNotSeenYet) {
  for (const char* name : {"written", "closed"}) {
    fs::create_hard_link(base.file(std::string("one/") + name),
                         base / ("two/" + std::string(name)));
  }
  scanListening([&, isDone = false](const std::string& folder) mutable {
    if (folder != base / "two" || std::exchange(isDone, true)) return;
    base.file("two/written", "more");
    fs::permissions(base / "two/closed", fs::perms::none);
  });
  ASSERT_TRUE(stream->start());
  EXPECT_EQ(differenceLeft(), "");
}

TEST_P(WalkedStream, TellsOfAFileThatMayBeReadAgainUnderAllItsNames) {
  const auto file = base.file("one/file");
  const auto other = base / "two/other";
  fs::create_hard_link(file, other);
  fs::permissions(file, fs::perms::none);
  const auto closeAndOpenBy = [&](const std::string& name) {
    fs::permissions(name, fs::perms::none);
    EXPECT_EQ(differenceLeft(), "");
    fs::permissions(name, fs::perms::owner_read);
    EXPECT_EQ(differenceLeft(), "");
  };
  scanListening([](const std::string&) {});
  ASSERT_NE(lineAfterStart(), "");
  fs::permissions(other, fs::perms::owner_read);
  EXPECT_EQ(differenceLeft(), "");
  closeAndOpenBy(file);
  fs::permissions(other, fs::perms::none);
  EXPECT_EQ(differenceLeft(), "");

  // Another stream finds them hidden when it walks itself.
  create();
  ASSERT_NE(lineAfterStart(), "");
  fs::permissions(file, fs::perms::owner_read);
  EXPECT_EQ(differenceLeft(), "");
  fs::permissions(other, fs::perms::none);
  EXPECT_EQ(differenceLeft(), "");
  // Nobody looks before the name is gone.
  std::promise<void> done;
  queue.post([&] {
    fs::permissions(file, fs::perms::owner_read);
    fs::remove(file);
    done.set_value();
  });
  done.get_future().wait();
  EXPECT_EQ(differenceLeft(), "");
}

TEST_P(WalkedStream, ComparesWhenTooMuchHappened) {
  options.maxCollected = 10;
  base.file("one/gone/file");
  scanListening([](const std::string&) {});
  fs::remove_all(base / "one/gone");
  for (int i = 0; i < 50; ++i) base.file("one/" + std::to_string(i) + "/file");
  ASSERT_TRUE(stream->start());
  EXPECT_EQ(differenceLeft(), "");
}

TEST_P(WalkedStream, NothingIsDeliveredBeforeTheStartNorAfterAStop) {
  base.file("one/file");
  scanListening([&](const std::string& folder) { fs::remove(folder + "/file"); });
  base.file("one/new");
  EXPECT_FALSE(stream->listen()) << "it does already";
  stream->stop();
  EXPECT_FALSE(stream->start());
  EXPECT_FALSE(stream->listen());
  EXPECT_TRUE(index->rows().empty());
}

TEST_P(WalkedStream, FollowsWhatASurveyFollows) {
  for (const char* name : {"one/.hidden/in/x", "one/bundle.app/in/x", "one/own/in/x", "one/no/in/x",
                           "one/only/in/x", "one/closed/in/x", "two/.hidden/x"}) {
    base.file(name);
  }
  fs::create_directory_symlink("/", base / "one/link");
  fs::permissions(base / "one/closed", fs::perms::owner_write);
  options.ownPaths = {base / "one/own"};
  const std::vector<ScopeFilter> scopes{
      {},
      {.excludedPrefixes = {base / "one/no", base / "one/only/", base / "two/"}},
      {.excludedPrefixes = {},
       .skipsHidden = true,
       .skipsPackageContents = true,
       .skipsLinks = true}};
  for (const auto& scope : scopes) {
    options.scope = scope;
    create();
    const auto surveyed = lineAfterStart();
    scanListening([](const std::string&) {});
    EXPECT_EQ(lineAfterStart(), surveyed);
  }
}

TEST(SharedWalk, AScanTellsOfTheFoldersThatAComparisonTellsOf) {
  const test::Unprivileged user;
  const test::TemporaryFolder tree;
  test::makeHardTree(tree, /*count=*/3000, /*seed=*/7);
  fs::permissions(tree.folder("closed"), fs::perms::owner_write);
  fs::permissions(tree.folder("listed only"), fs::perms::owner_read);
  for (const char* name : {"no/x", "not/x", "only/x", "a.app/in/x", ".h/in/x"}) tree.file(name);
  fs::create_hard_link(tree.file("hidden"), tree / "only/hidden");
  fs::permissions(tree / "hidden", fs::perms::none);
  const std::vector<IndexConfiguration> configs{{.excludedPaths = {}, .skipPackageContents = false},
                                                {.excludedPaths = {tree / "no", tree / "only/"},
                                                 .skipHiddenFiles = true,
                                                 .skipSymlinks = true}};
  for (const auto& config : configs) {
    const StreamScope scope({tree.path()},
                            {.excludedPrefixes = config.excludedPaths,
                             .skipsHidden = config.skipHiddenFiles,
                             .skipsPackageContents = config.skipPackageContents,
                             .skipsLinks = config.skipSymlinks},
                            {});
    Noter compared;
    Reconciler(scope, compared, {}).compare(tree.path(), nullptr, Reconciler::Depth::tree);
    const auto scanned = std::make_shared<Noter>();
    test::MainThread main;
    const tasks::ThreadPool pool(1);
    const auto walk =
        FileSystemScanner{}.scan({tree.path()}, config, {}, pool.executor(), scanned).walk;
    main.await(walk.wait());
    EXPECT_EQ(scanned->listed, compared.listed);
    EXPECT_EQ(scanned->unlisted, compared.unlisted);
    EXPECT_EQ(scanned->named, compared.named);
    EXPECT_THAT(scanned->named, testing::Contains(tree / "hidden"));
    EXPECT_GT(scanned->listed.size(), 50);
    EXPECT_FALSE(scanned->unlisted.empty());
  }
}

INSTANTIATE_TEST_SUITE_P(EverySource, WalkedStream, testing::ValuesIn(test::possibleSources()),
                         test::nameOf);

}  // namespace
}  // namespace zelnor::platform
