#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <latch>
#include <limits>
#include <map>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/FileDefaultsStore.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Unprivileged.h"

namespace {
std::atomic<int> flushes = 0;
}  // namespace

/// Instead of the C library's, to be counted.
extern "C" int fsync(int file) {
  ++flushes;
  return static_cast<int>(::syscall(SYS_fsync, file));
}

namespace zelnor::platform {
namespace {

namespace fs = std::filesystem;
using Value = DefaultsStore::Value;
using Strings = std::vector<std::string>;

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class FileDefaultsStoreTest : public testing::Test {
 protected:
  const test::TemporaryFolder temporary_;
  const std::string folder_ = temporary_ / "config/Zelnor";
  const std::string file_ = folder_ + "/settings.json";
  void writeFile(const std::string& content) const {
    temporary_.file("config/Zelnor/settings.json", content);
  }
};

TEST_F(FileDefaultsStoreTest, EveryValueSurvivesARestart) {
  const std::map<std::string, Value> values{
      {"true", true},
      {"false", false},
      {"number", std::numeric_limits<std::uint64_t>::max()},
      {"zero", std::uint64_t{0}},
      {"text", std::string("中文 \"quoted\"\n\x01")},
      {"NUL", std::string("a\0b", 3)},
      {"not UTF-8", std::string("\xff/\xfe")},
      {"no text", std::string()},
      {"list", Strings{"b", "", "a\xff", "中"}},
      {"empty list", Strings{}},
      {"bytes", DefaultsStore::Bytes{std::byte{0}, std::byte{255}, std::byte{7}, std::byte{10}}},
      {"no bytes", DefaultsStore::Bytes{}}};
  FileDefaultsStore store(folder_);
  for (const auto& [key, value] : values) store.set(key, value);
  const FileDefaultsStore restarted(folder_);
  for (const auto& [key, value] : values) {
    EXPECT_EQ(store.value(key), value) << key;
    EXPECT_EQ(restarted.value(key), value) << key;
  }
  EXPECT_FALSE(restarted.value("missing"));
  EXPECT_FALSE(restarted.get<bool>("text"));
  store.remove("text");
  EXPECT_FALSE(restarted.value("text"));
  EXPECT_TRUE(restarted.value("list"));
}

TEST_F(FileDefaultsStoreTest, ADamagedFileIsSetAsideBeforeTheFirstChange) {
  int number = 0;
  for (const std::string damaged : {"{\"a\": tru", "", "[1]", "\xff"}) {
    writeFile(damaged);
    FileDefaultsStore store(folder_);
    EXPECT_FALSE(store.value("a"));
    EXPECT_EQ(contentOf(file_), damaged) << "reading changes nothing";
    store.set("a", true);
    EXPECT_EQ(store.get<bool>("a"), true);
    EXPECT_EQ(contentOf(file_ + ".damaged-" + std::to_string(++number)), damaged);
  }
}

TEST_F(FileDefaultsStoreTest, AFailedWriteChangesNothing) {
  const test::Unprivileged user;
  const test::TemporaryFolder own;
  FileDefaultsStore store(own.path());
  store.set("a", std::string("old"));
  const auto before = contentOf(own / "settings.json");
  const auto expectRefused = [&] {
    store.set("a", std::string("new"));
    store.remove("a");
    EXPECT_EQ(store.get<std::string>("a"), "old");
    EXPECT_EQ(contentOf(own / "settings.json"), before);
    EXPECT_FALSE(fs::exists(own / "settings.json.new"));
    store.setVolatile("a", std::string("new"));
    EXPECT_EQ(store.get<std::string>("a"), "old");
    EXPECT_EQ(contentOf(own / "settings.json"), before);
  };
  {
    std::signal(SIGXFSZ, SIG_IGN);  // so that a full disk can be had
    const test::ResourceLimit full(RLIMIT_FSIZE, 0);
    expectRefused();
  }
  fs::permissions(own.path(), fs::perms::owner_read | fs::perms::owner_exec);
  expectRefused();
  fs::permissions(own.path(), fs::perms::owner_all);
  store.set("\xff", true);
  EXPECT_EQ(contentOf(own / "settings.json"), before);
  store.set("a", std::string("new"));
  EXPECT_EQ(store.get<std::string>("a"), "new");
}

TEST_F(FileDefaultsStoreTest, AFileThatCannotBeReadIsLeftAlone) {
  const test::Unprivileged user;
  const test::TemporaryFolder own;
  const auto path = own.file("settings.json", "{}");
  fs::permissions(path, fs::perms::none);
  FileDefaultsStore store(own.path());
  store.set("a", true);
  EXPECT_FALSE(store.value("a"));
  fs::permissions(path, fs::perms::owner_read);
  EXPECT_EQ(contentOf(path), "{}");
}

TEST_F(FileDefaultsStoreTest, StoresOnOneFileKeepEachOthersValues) {
  FileDefaultsStore one(folder_);
  FileDefaultsStore other(folder_);
  one.set("a", std::uint64_t{1});
  other.set("b", std::uint64_t{2});
  one.set("a", std::uint64_t{3});
  EXPECT_EQ(other.get<std::uint64_t>("a"), 3);
  EXPECT_EQ(one.get<std::uint64_t>("b"), 2);
}

TEST_F(FileDefaultsStoreTest, AVolatileValueIsSharedLikeOthersWithoutWaitingForTheDisk) {
  FileDefaultsStore store(folder_);
  const FileDefaultsStore other(folder_);
  const auto expect = [&](std::optional<std::uint64_t> number) {
    EXPECT_EQ(store.get<std::uint64_t>("n"), number);
    EXPECT_EQ(other.get<std::uint64_t>("n"), number);
  };
  flushes = 0;
  for (std::uint64_t n = 1; n < 4; ++n) {
    store.setVolatile("n", n);
    expect(n);
  }
  EXPECT_EQ(flushes, 0);
  // Whichever was set last counts, and nothing older shows behind it.
  store.set("n", std::uint64_t{4});
  EXPECT_GT(flushes, 0);
  expect(4);
  store.setVolatile("n", std::uint64_t{5});
  expect(5);
  fs::remove(folder_ + "/state.json");
  expect(std::nullopt);
  store.setVolatile("n", std::uint64_t{6});
  store.remove("n");
  expect(std::nullopt);
}

TEST_F(FileDefaultsStoreTest, WhatAPowerFailureLeavesOfVolatileValuesIsOverwrittenAndCostsNoOther) {
  FileDefaultsStore store(folder_);
  store.set("a", true);
  for (const auto& left : {std::string(), std::string(64, '\0'), std::string("{\"n\": 1")}) {
    temporary_.file("config/Zelnor/state.json", left);
    EXPECT_FALSE(store.value("n"));
    EXPECT_EQ(store.get<bool>("a"), true);
    store.setVolatile("n", std::uint64_t{2});
    EXPECT_EQ(store.get<std::uint64_t>("n"), 2);
  }
  for (const auto& entry : fs::directory_iterator(folder_)) {
    EXPECT_THAT(entry.path().string(), testing::Not(testing::HasSubstr("damaged")));
  }
}

TEST_F(FileDefaultsStoreTest, NoChangeIsLostWhenManyWriteAtOnce) {
  constexpr int kWriters = 4;
  constexpr int kValues = 20;
  const auto key = [](int writer, int value) {
    return std::to_string(writer) + "/" + std::to_string(value);
  };
  {
    std::latch start(kWriters);
    std::vector<std::jthread> writers;
    for (int writer = 0; writer < kWriters; ++writer) {
      writers.emplace_back([&, writer] {
        FileDefaultsStore store(folder_);
        start.arrive_and_wait();
        for (int value = 0; value < kValues; ++value) store.set(key(writer, value), true);
      });
    }
  }
  const FileDefaultsStore store(folder_);
  for (int writer = 0; writer < kWriters; ++writer) {
    for (int value = 0; value < kValues; ++value)
      EXPECT_TRUE(store.value(key(writer, value))) << key(writer, value);
  }
}

TEST_F(FileDefaultsStoreTest, WhatItDoesNotUnderstandIsKept) {
  writeFile(R"({"later": {"x": [null]}, "negative": -1})");
  FileDefaultsStore store(folder_);
  EXPECT_FALSE(store.value("later"));
  EXPECT_FALSE(store.value("negative"));
  store.set("a", true);
  EXPECT_THAT(contentOf(file_),
              testing::AllOf(testing::HasSubstr("null"), testing::HasSubstr("-1")));
}

TEST_F(FileDefaultsStoreTest, FilesBelongToTheirOwnerAndEqualValuesAreNotWritten) {
  const auto status = [](const std::string& path) {
    struct stat result{};
    EXPECT_EQ(stat(path.c_str(), &result), 0);
    return result;
  };
  FileDefaultsStore store(folder_);
  store.remove("a");
  EXPECT_FALSE(fs::exists(temporary_ / "config"));
  store.set("a", true);
  store.setVolatile("b", true);
  EXPECT_EQ(status(folder_).st_mode & 07777U, 0700U);
  for (const auto& entry : fs::directory_iterator(folder_)) {
    EXPECT_EQ(status(entry.path().string()).st_mode & 07777U, 0600U) << entry.path();
  }
  const auto before = status(file_).st_ino;
  store.set("a", true);
  EXPECT_EQ(status(file_).st_ino, before);
}

}  // namespace
}  // namespace zelnor::platform
