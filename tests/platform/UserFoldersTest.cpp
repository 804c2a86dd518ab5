#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <optional>

#include <gtest/gtest.h>
#include <stdlib.h>

#include "platform/UserFolders.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::platform {
namespace {

namespace fs = std::filesystem;

class UserFoldersTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME"}) {
      const char* const value = getenv(name);
      before_[name] = value != nullptr ? std::optional<std::string>(value) : std::nullopt;
    }
  }
  void TearDown() override {
    for (const auto& [name, value] : before_) set(name.c_str(), value ? value->c_str() : nullptr);
  }
  static void set(const char* name, const char* value) {
    if (value != nullptr) {
      setenv(name, value, /*replace=*/1);
    } else {
      unsetenv(name);
    }
  }

 private:
  std::map<std::string, std::optional<std::string>> before_;
};

TEST_F(UserFoldersTest, FollowTheEnvironmentWhereItIsAbsolute) {
  struct Case {
    const char* dataHome;
    const char* configHome;
    std::string data;
    std::string config;
  };
  set("HOME", "/h");
  for (const auto& [dataHome, configHome, data, config] :
       {Case{nullptr, nullptr, "/h/.local/share/Zelnor", "/h/.config/Zelnor"},
        Case{"", "relative", "/h/.local/share/Zelnor", "/h/.config/Zelnor"},
        Case{"/d", "/c\xff", "/d/Zelnor", "/c\xff/Zelnor"}}) {
    set("XDG_DATA_HOME", dataHome);
    set("XDG_CONFIG_HOME", configHome);
    const auto folders = UserFolders::current();
    EXPECT_EQ(folders.home, "/h");
    EXPECT_EQ(folders.data, data);
    EXPECT_EQ(folders.config, config);
  }
  set("HOME", nullptr);
  EXPECT_TRUE(UserFolders::current().home.starts_with('/'));
}

TEST_F(UserFoldersTest, CreatedFoldersArePrivateAndExistingOnesStay) {
  const test::TemporaryFolder folder;
  fs::permissions(folder.folder("there"), fs::perms::all);
  for (const auto* path : {"there/new/deep", "there/new/deep", "there/other/"})
    createPrivateFolder(folder / path);
  const auto mode = [&](const std::string& name) {
    return fs::status(folder / name).permissions();
  };
  EXPECT_EQ(mode("there"), fs::perms::all);
  for (const auto* path : {"there/new", "there/new/deep", "there/other"})
    EXPECT_EQ(mode(path), fs::perms::owner_all);
  folder.file("file");
  EXPECT_THROW(createPrivateFolder(folder / "file"), fs::filesystem_error);
  EXPECT_THROW(createPrivateFolder(folder / "file/below"), fs::filesystem_error);
}

}  // namespace
}  // namespace zelnor::platform
