#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/desktop/DesktopFileActions.h"
#include "platform/linux/ExclusiveRename.h"
#include "tests/platform_desktop/PrivateHome.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Unprivileged.h"

namespace zelnor::platform {
namespace {

namespace fs = std::filesystem;
using test::privateHome;
using testing::HasSubstr;
using testing::IsEmpty;

const std::vector<std::string> kHardNames{
    "plain.txt",  "new\nline", "not\xff\xfe utf8",    "<b>bold&amp;", "-rf",
    "50%20%zz#?", " ",         std::string(255, 'n'), "..leading",    "\xE6\x8A\xA5\xE5\x91\x8A"};

bool isThere(const std::string& path) {
  return fs::symlink_status(path).type() != fs::file_type::not_found;
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// What was said about why `action` failed; nothing if it did not fail.
template <class Action>
std::optional<std::string> failure(const Action& action) {
  try {
    action();
  } catch (const FileError& error) {
    return error.what();
  }
  return std::nullopt;
}

/// The contents of what is in the trash, and how many notes about where to restore it to there are.
struct Trash {
  std::vector<std::string> contents;
  std::size_t notes = 0;

  static Trash read() {
    const auto folder = privateHome() / "data/Trash";
    Trash trash;
    if (!fs::exists(folder)) return trash;
    for (const auto& entry : fs::directory_iterator(folder + "/files"))
      trash.contents.push_back(contentOf(entry.path()));
    trash.notes =
        static_cast<std::size_t>(std::distance(fs::directory_iterator(folder + "/info"), {}));
    return trash;
  }
};

class FileActionsTest : public testing::Test {
 protected:
  ~FileActionsTest() override { fs::remove_all(privateHome() / "data/Trash"); }

  std::string file(const std::string& name, const std::string& content = "content") const {
    return privateHome().file("work/" + std::to_string(number_) + "/" + name, content);
  }
  std::optional<std::string> rename(const std::string& from, const std::string& to) {
    return failure([&] { actions_.rename(from, to); });
  }
  std::optional<std::string> trash(const std::string& path) {
    return failure([&] { actions_.trash(path); });
  }

  DesktopFileActions actions_;

 private:
  static int& counter() {
    static int counter = 0;
    return counter;
  }
  const int number_ = ++counter();
};

TEST_F(FileActionsTest, TrashKeepsWhatHasAHardName) {
  for (const auto& name : kHardNames) {
    const auto path = file(name, "of " + name);
    EXPECT_EQ(trash(path), std::nullopt) << name;
    EXPECT_FALSE(isThere(path)) << name;
    EXPECT_THAT(Trash::read().contents, testing::Contains("of " + name));
  }
  EXPECT_EQ(Trash::read().notes, kHardNames.size());
}

TEST_F(FileActionsTest, TrashRemembersTheWholeOfANameThatItHasToShorten) {
  const auto path = file(std::string(250, 'n') + " %\xff\n");
  for (int time = 0; time < 2; ++time) {
    std::ofstream(path) << "content";
    EXPECT_EQ(trash(path), std::nullopt);
  }
  EXPECT_THAT(Trash::read().contents, testing::ElementsAre("content", "content"));
  for (const auto& note : fs::directory_iterator(privateHome() / "data/Trash/info")) {
    EXPECT_TRUE(isThere(privateHome() / "data/Trash/files/" + note.path().stem().string()));
    EXPECT_THAT(contentOf(note.path()),
                testing::MatchesRegex("\\[Trash Info\\]\nPath=/.*/n{250}%20%25%FF%0A\n"
                                      "DeletionDate=....-..-..T..:..:..\n"));
  }
}

TEST_F(FileActionsTest, TrashTakesFoldersWithTheirContentsAndLinksWithoutTheirs) {
  const auto target = file("target");
  const auto inside = file("folder/inside");
  const auto folder = fs::path(inside).parent_path().string();
  fs::create_symlink(folder, folder + ".link");
  EXPECT_EQ(trash(folder + ".link"), std::nullopt);
  EXPECT_TRUE(isThere(inside));
  EXPECT_EQ(trash(folder), std::nullopt);
  EXPECT_FALSE(isThere(folder));
  EXPECT_EQ(contentOf(privateHome() / "data/Trash/files/folder/inside"), "content");
  EXPECT_TRUE(isThere(target));
}

TEST_F(FileActionsTest, TrashSaysWhyItCannotAndLeavesEverything) {
  EXPECT_THAT(trash(file("x") + "-vanished").value_or(""), HasSubstr("No such file"));
  EXPECT_THAT(trash("/proc/version").value_or(""), testing::Not(IsEmpty()));
  EXPECT_THAT(Trash::read().contents, IsEmpty());

  const auto path = file("locked/file");
  const auto folder = fs::path(path).parent_path().string();
  fs::create_directories(privateHome() / "data");
  fs::permissions(privateHome().path(), fs::perms::others_exec, fs::perm_options::add);
  {
    const test::Unprivileged ordinaryUser;
    EXPECT_THAT(trash(path).value_or(""), testing::Not(IsEmpty()));
  }
  EXPECT_EQ(contentOf(path), "content");
}

TEST_F(FileActionsTest, RenameTakesEveryNameThatTheFileSystemTakes) {
  auto path = file("first");
  for (const auto& name : kHardNames) {
    const auto renamed = fs::path(path).parent_path().string() + "/" + name;
    EXPECT_EQ(rename(path, renamed), std::nullopt) << name;
    EXPECT_FALSE(isThere(path)) << name;
    EXPECT_EQ(contentOf(renamed), "content") << name;
    path = renamed;
  }
}

TEST_F(FileActionsTest, RenameNeverReplacesAnything) {
  const auto path = file("file");
  const auto folder = fs::path(path).parent_path().string();
  file("other", "other");
  fs::create_directory(folder + "/empty");
  fs::create_symlink("nowhere", folder + "/dangling");
  for (const auto* taken : {"/other", "/empty", "/dangling", "/.", "/.."}) {
    EXPECT_EQ(rename(path, folder + taken), "File exists") << taken;
    EXPECT_THAT(failure([&] {
                  try {
                    renameInSteps(path, folder + taken);
                  } catch (const std::system_error& error) {
                    throw FileError(error.what());
                  }
                }).value_or(""),
                HasSubstr("File exists"))
        << taken;
  }
  EXPECT_EQ(rename(path, path), std::nullopt);
  EXPECT_EQ(contentOf(path), "content");
  EXPECT_EQ(contentOf(folder + "/other"), "other");
  EXPECT_TRUE(isThere(folder + "/empty"));
}

TEST_F(FileActionsTest, RenameStaysInTheFolder) {
  const auto path = file("folder/file");
  const auto folder = fs::path(path).parent_path().string();
  fs::create_directory(folder + "/sub");
  for (const auto& name : {std::string(), std::string("sub/x"), std::string("../x"),
                           std::string("sub/"), std::string("/x"), std::string("nul\0x", 5)}) {
    EXPECT_EQ(rename(path, folder + "/" + name), "Invalid argument") << name;
  }
  EXPECT_EQ(rename(path, folder + "/" + std::string(256, 'n')), "File name too long");
  EXPECT_EQ(contentOf(path), "content");
}

TEST_F(FileActionsTest, RenameSaysWhyItCannot) {
  const auto path = file("locked/file");
  fs::permissions(privateHome().path(), fs::perms::others_exec, fs::perm_options::add);
  EXPECT_EQ(rename(path + "-vanished", path + "-new"), "No such file or directory");
  EXPECT_EQ(rename(path + "-vanished", path + "-vanished"), "No such file or directory");
  {
    const test::Unprivileged ordinaryUser;
    EXPECT_EQ(rename(path, path + "-new"), "Permission denied");
  }
  EXPECT_EQ(contentOf(path), "content");
}

TEST_F(FileActionsTest, RenameInStepsDoesWhatOneStepDoes) {
  const auto path = file("folder/file");
  const auto folder = fs::path(path).parent_path().string();
  fs::create_symlink("nowhere", folder + "/link");
  renameInSteps(folder + "/link", folder + "/link2");
  renameInSteps(path, path + "2");
  renameInSteps(folder, folder + "2");
  EXPECT_EQ(fs::read_symlink(folder + "2/link2"), "nowhere");
  EXPECT_EQ(contentOf(folder + "2/file2"), "content");
  EXPECT_FALSE(isThere(folder));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder + "2"), {}), 2);

  file("taken/inside");
  const auto parent = fs::path(folder).parent_path().string();
  EXPECT_THROW(renameInSteps(folder + "2", parent + "/taken"), std::system_error);
  EXPECT_THROW(renameInSteps(folder + "2", folder + "2/into-itself"), std::system_error);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder + "2"), {}), 2);
}

TEST_F(FileActionsTest, DeepPathsWorkOrSayThatTheyAreTooLong) {
  for (const int depth : {15, 40}) {
    // Made step by step, because the kernel takes no path of that length.
    auto path = privateHome().folder("deep" + std::to_string(depth));
    const auto before = fs::current_path();
    fs::current_path(path);
    for (int level = 0; level < depth; ++level) {
      const std::string name(250, 'd');
      fs::create_directory(name);
      fs::current_path(name);
      path += "/" + name;
    }
    std::ofstream("file") << "content";
    EXPECT_EQ(rename(path + "/file", path + "/renamed"), std::nullopt);
    EXPECT_EQ(contentOf("renamed"), "content");
    const bool isShort = path.size() < 4000;
    if (isShort) {
      EXPECT_EQ(trash(path + "/renamed"), std::nullopt);
    } else {
      EXPECT_THAT(trash(path + "/renamed").value_or(""), HasSubstr("File name too long"));
    }
    EXPECT_EQ(isThere("renamed"), !isShort);
    fs::current_path(before);
  }
}

}  // namespace
}  // namespace zelnor::platform
