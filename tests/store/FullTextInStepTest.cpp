#include <map>
#include <random>

#include <gtest/gtest.h>

#include "store/IndexDatabase.h"
#include "tests/support/RawDatabase.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor {
namespace {

/// Random operations on an index, and what it must hold after them.
class Exercise {
 public:
  Exercise(const std::string& folder, unsigned seed)
      : database_(IndexDatabase::openForWriting(folder)), random_(seed) {}

  void step() {
    switch (pick(14)) {
      case 0:
        return clear();
      case 1:
        return database_.beginBulkLoad(/*source=*/1);
      case 2:
        return database_.endBulkLoad();
      case 3:
        static_cast<void>(database_.mergeStep());
        return;
      case 4:
      case 5:
      case 6:
        return remove();
      case 7:
      case 8:
        return move();
      default:
        return insert();
    }
  }

  /// What the index holds, by path, without row ids.
  std::map<std::string, FileRecord> stored() {
    std::map<std::string, FileRecord> rows;
    for (auto& record : database_.search(
             {"SELECT id, name, path, size, mtime, kind, inode FROM files", {}}, /*limit=*/0)) {
      record.id = 0;
      rows.emplace(record.path, record);
    }
    return rows;
  }
  [[nodiscard]] const std::map<std::string, FileRecord>& expected() const { return expected_; }

 private:
  int pick(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(random_); }

  FileRecord randomRecord() {
    FileRecord record;
    // Few names, so that paths collide within a batch and between batches; some are not UTF-8.
    record.name = "report " + std::to_string(pick(300)) + (pick(4) == 0 ? "\xff.pdf" : ".pdf");
    record.path = "/home/" + record.name;
    // A row may be replaced by one of another name on the same path only if somebody renames it so;
    // it must hold too.
    if (pick(10) == 0) record.name += " renamed";
    record.size = pick(1000);
    record.kind = kAllFileKinds.at(static_cast<std::size_t>(pick(3)));
    return record;
  }

  void insert() {
    std::vector<FileRecord> batch;
    for (int i = pick(200); i >= 0; --i) batch.push_back(randomRecord());
    database_.batchInsert(batch);
    for (const auto& record : batch) expected_.insert_or_assign(record.path, record);
  }
  void remove() {
    std::vector<std::string> paths;
    for (int i = pick(50); i >= 0; --i) paths.push_back(randomRecord().path);
    database_.deleteByPaths(paths);
    for (const auto& path : paths) expected_.erase(path);
  }
  /// Files go to other folders, or change places with those that are there, while others change.
  void move() {
    FileChanges changes;
    std::map<std::string, FileRecord> arrivals;
    for (const auto& [path, record] : expected_) {
      if (pick(3) == 0) continue;
      auto moved = record;
      moved.path = (pick(2) == 0 ? "/home/" : "/moved/") + record.name;
      if (pick(5) == 0) moved.size = pick(1000);
      changes.removals.push_back(path);
      arrivals.insert_or_assign(moved.path, moved);
    }
    std::erase_if(changes.removals, [&](const auto& path) { return arrivals.contains(path); });
    for (const auto& path : changes.removals) expected_.erase(path);
    for (const auto& [path, record] : arrivals) {
      expected_.insert_or_assign(path, record);
      changes.upserts.push_back(record);
    }
    const auto before = database_.totalFileCount();
    const auto difference = database_.apply(std::move(changes));
    EXPECT_EQ(database_.totalFileCount() - before, difference.growth());
  }
  void clear() {
    database_.clearAll();
    expected_.clear();
  }

  IndexDatabase database_;
  std::mt19937 random_;
  std::map<std::string, FileRecord> expected_;
};

TEST(FullTextIndex, StaysInStepThroughAnySequenceOfOperations) {
  for (unsigned seed = 1; seed <= 5; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const test::TemporaryFolder folder;
    Exercise exercise(folder.path(), seed);
    const test::RawDatabase raw(folder / "index.sqlite");
    for (int i = 0; i < 60; ++i) {
      exercise.step();
      ASSERT_TRUE(raw.isSound()) << "step " << i;
      ASSERT_EQ(exercise.stored(), exercise.expected()) << "step " << i;
    }
  }
}

TEST(FullTextIndex, StaysInStepWhenAnotherProgramWritesThroughTheTriggers) {
  const test::TemporaryFolder folder;
  auto database = IndexDatabase::openForWriting(folder.path());
  const std::vector<FileRecord> records{{.name = "alpha.txt", .path = "/alpha.txt"}};
  database.batchInsert(records);
  const test::RawDatabase raw(folder / "index.sqlite");
  raw.exec("UPDATE files SET name = 'omega.txt'");
  raw.exec("INSERT INTO files(name, path) VALUES ('kappa.txt', '/kappa.txt')");
  EXPECT_EQ(raw.matches("alpha"), 1);  // still in the path
  EXPECT_EQ(raw.matches("omega"), 1);
  raw.exec("DELETE FROM files WHERE name = 'omega.txt'");
  EXPECT_EQ(raw.matches("omega"), 0);
  EXPECT_TRUE(raw.isSound());
}

TEST(FullTextIndex, FindsEachBatchOfABulkLoadAtOnceAndIgnoresCase) {
  const test::TemporaryFolder folder;
  auto database = IndexDatabase::openForWriting(folder.path());
  const test::RawDatabase raw(folder / "index.sqlite");
  database.beginBulkLoad(/*source=*/1);
  for (int batch = 1; batch <= 3; ++batch) {
    const std::vector<FileRecord> records{
        {.name = "Datei.TXT", .path = "/Datei" + std::to_string(batch) + ".TXT"}};
    database.batchInsert(records);
    EXPECT_EQ(raw.matches("datei"), batch);
  }
  database.clearAll();
  EXPECT_EQ(raw.matches("datei"), 0);
}

TEST(FullTextIndex, MergesInStepsUntilNothingIsLeft) {
  const test::TemporaryFolder folder;
  auto database = IndexDatabase::openForWriting(folder.path());
  database.beginBulkLoad(/*source=*/1);
  for (int batch = 0; batch < 40; ++batch) {
    std::vector<FileRecord> records;
    for (int i = 0; i < 300; ++i) {
      const auto name = "file-" + std::to_string(batch) + "-" + std::to_string(i * 7919);
      records.push_back({.name = name, .path = "/data/" + name});
    }
    database.batchInsert(records);
  }
  database.endBulkLoad();
  const test::RawDatabase raw(folder / "index.sqlite");
  const auto pieces = "SELECT count(DISTINCT segid) FROM files_fts_idx";
  const auto before = raw.integer(pieces);
  int steps = 0;
  while (database.mergeStep() && steps < 1000) ++steps;
  EXPECT_GT(before, 4);
  EXPECT_LT(raw.integer(pieces), 4);
  EXPECT_TRUE(raw.isSound());
}

}  // namespace
}  // namespace zelnor
