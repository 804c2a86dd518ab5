#include <chrono>
#include <filesystem>
#include <future>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "indexer/FileSystemScanner.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Unprivileged.h"

namespace zelnor {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Paths = std::vector<std::string>;
/// Temporary folders may be anywhere, also below a path that is excluded by default.
const IndexConfiguration kEverything{.excludedPaths = {}};
using Batches = std::vector<FileSystemScanner::Stream::Batch>;

class FileSystemScannerTest : public testing::Test {
 protected:
  /// Scans and takes every batch.
  Batches scan(const Paths& roots, const IndexConfiguration& config,
               std::size_t batchSize = 10'000) {
    const auto scan = FileSystemScanner{.batchSize = batchSize}.scan(
        roots, config, /*progressCallback=*/{}, pool_.executor());
    return main_.await(drain(scan.stream));
  }
  /// The paths found below the tree, relative to it.
  Paths pathsWith(const IndexConfiguration& config) {
    Paths paths;
    for (const auto& batch : scan({tree_.path()}, config)) {
      for (const auto& record : batch) paths.push_back(record.path.substr(tree_.path().size() + 1));
    }
    return paths;
  }
  static tasks::Async<Batches> drain(std::shared_ptr<FileSystemScanner::Stream> stream) {
    Batches batches;
    while (auto batch = co_await stream->next()) batches.push_back(std::move(*batch));
    co_return batches;
  }

  test::TemporaryFolder tree_;
  test::MainThread main_;
  tasks::ThreadPool pool_{1};
};

TEST_F(FileSystemScannerTest, RecordsAreThoseOfTheirPaths) {
  for (const auto* name : {"line\nbreak", "\xff", "d/'q\"", "d/中文.txt"})
    tree_.file(name, "content");
  fs::create_symlink("d", tree_ / "link");
  const auto batches = scan({tree_.path()}, kEverything);
  ASSERT_THAT(batches, ElementsAre(SizeIs(6)));
  for (const auto& record : batches.front())
    EXPECT_EQ(record, FileRecord::fromPath(record.path)) << record.path;
}

TEST_F(FileSystemScannerTest, TheConfigurationSaysWhatIsLeftOut) {
  for (const auto* name : {".hidden/in", ".profile", "A.app/in", "ab", "abc/d", "d/f"})
    tree_.file(name);
  fs::create_symlink("d", tree_ / "link");
  struct Case {
    IndexConfiguration config;
    Paths expected;
  };
  const std::vector<Case> cases{
      {kEverything,
       {".hidden", ".hidden/in", ".profile", "A.app", "ab", "abc", "abc/d", "d", "d/f", "link"}},
      {{.excludedPaths = {}, .skipHiddenFiles = true},
       {"A.app", "ab", "abc", "abc/d", "d", "d/f", "link"}},
      {{.excludedPaths = {}, .skipHiddenFiles = true, .skipPackageContents = false},
       {"A.app", "A.app/in", "ab", "abc", "abc/d", "d", "d/f", "link"}},
      {{.excludedPaths = {}, .skipHiddenFiles = true, .skipSymlinks = true},
       {"A.app", "ab", "abc", "abc/d", "d", "d/f"}},
      {{.excludedPaths = {tree_ / "ab", tree_ / ".", tree_ / "d/"}}, {"A.app", "d", "link"}},
      {{.excludedPaths = {tree_.path().substr(0, tree_.path().size() - 1)}}, {}}};
  for (const auto& [config, expected] : cases) EXPECT_EQ(pathsWith(config), expected);
}

TEST_F(FileSystemScannerTest, RootsAreScannedInOrderAndThemselvesNoRecords) {
  for (const auto* name : {"b/x", "a/y", "excluded/z", "f", "empty"}) tree_.file(name);
  const Paths roots{tree_ / "b", tree_ / "missing", tree_ / "f", tree_ / "excluded", tree_ / "a"};
  Paths names;
  for (const auto& batch : scan(roots, {.excludedPaths = {tree_ / "ex"}}, /*batchSize=*/1)) {
    for (const auto& record : batch) names.push_back(record.name);
  }
  EXPECT_THAT(names, ElementsAre("x", "y"));
  EXPECT_THAT(scan({tree_.folder("nothing")}, kEverything), IsEmpty());
}

TEST_F(FileSystemScannerTest, BatchesAreFullExceptTheLast) {
  constexpr int kFiles = 25'000;
  for (int i = 0; i < kFiles; ++i) std::ofstream(tree_ / std::to_string(i));
  std::vector<std::int64_t> progress;
  const auto scan = FileSystemScanner{}.scan(
      {tree_.path()}, kEverything, [&](std::int64_t total) { progress.push_back(total); },
      pool_.executor());
  EXPECT_THAT(main_.await(drain(scan.stream)),
              ElementsAre(SizeIs(10'000), SizeIs(10'000), SizeIs(5'000)));
  main_.await(scan.walk.wait());
  EXPECT_THAT(progress, ElementsAre(10'000, 20'000, 25'000));
}

TEST_F(FileSystemScannerTest, WithoutAReaderTheNewestBatchesWait) {
  for (const auto* name : {"a", "b", "c", "d", "e", "f"}) tree_.file(name);
  const auto scan = FileSystemScanner{.batchSize = 1}.scan(
      {tree_.path()}, kEverything, /*progressCallback=*/{}, pool_.executor());
  main_.await(scan.walk.wait());
  EXPECT_EQ(scan.stream->discarded(), 2U);
  const auto batches = main_.await(drain(scan.stream));
  ASSERT_THAT(batches, SizeIs(4));
  EXPECT_EQ(batches.front().front().name, "c");
}

TEST_F(FileSystemScannerTest, ACancelledWalkDeliversWhatItHasAndEnds) {
  for (const auto* name : {"a", "b", "c", "d", "e"}) tree_.file(name);
  std::promise<void> firstBatch;
  std::promise<void> cancelled;
  const auto waitAfterFirstBatch = [&](std::int64_t total) {
    if (total > 2) return;
    firstBatch.set_value();
    cancelled.get_future().wait();
  };
  const auto scan = FileSystemScanner{.batchSize = 2}.scan(
      {tree_.path(), tree_.path()}, kEverything, waitAfterFirstBatch, pool_.executor());
  ASSERT_EQ(firstBatch.get_future().wait_for(std::chrono::minutes(1)), std::future_status::ready);
  scan.walk.cancel();
  cancelled.set_value();
  EXPECT_THAT(main_.await(drain(scan.stream)), ElementsAre(SizeIs(2)));
}

TEST_F(FileSystemScannerTest, AVisitorIsToldOfAFolderBeforeItIsLookedInto) {
  /// Puts a file into each folder that it is told of.
  class Filler final : public platform::FolderVisitor {
   public:
    void willList(const std::string& folder) override { std::ofstream(folder + "/put") << "x"; }
    void couldNotList(const std::string& folder) override { unlisted.push_back(folder); }
    void foundName(const std::string& /*path*/, std::uint64_t /*inode*/) override {}
    Paths unlisted;
  };
  const auto filler = std::make_shared<Filler>();
  const auto folder = tree_.folder("a/b");
  for (const auto& old : {folder, tree_ / "a"}) fs::last_write_time(old, fs::file_time_type{});
  const auto scan = FileSystemScanner{}.scan({tree_.path() + "/", tree_ / "missing"}, kEverything,
                                             {}, pool_.executor(), filler);
  const auto batches = main_.await(drain(scan.stream));
  ASSERT_THAT(batches, ElementsAre(SizeIs(5)));
  for (const auto& record : batches.front())
    EXPECT_EQ(record, FileRecord::fromPath(record.path)) << record.path;
  EXPECT_THAT(filler->unlisted, ElementsAre(tree_ / "missing"));
}

TEST_F(FileSystemScannerTest, UnreadableEntriesAreLeftOut) {
  const test::Unprivileged user;
  const test::TemporaryFolder own;
  own.file("readable");
  fs::permissions(own.file("file"), fs::perms::none);
  fs::permissions(own.folder("folder"), fs::perms::none);
  const auto batches = scan({own.path()}, kEverything);
  ASSERT_THAT(batches, ElementsAre(SizeIs(1)));
  EXPECT_EQ(batches.front().front().name, "readable");
}

}  // namespace
}  // namespace zelnor
