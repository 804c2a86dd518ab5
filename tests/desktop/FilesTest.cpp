#include <filesystem>
#include <string>

#include "tests/desktop/DesktopTest.h"

namespace zelnor::test {
namespace {

namespace fs = std::filesystem;

/// What the context menu of a row offers, by its place in it.
enum class Entry : std::uint8_t { open = 1, reveal, preview, copyFile, copyPath, rename, trash };

class FilesTest : public DesktopTest {
 protected:
  void SetUp() override {
    home_.file(".local/share/applications/recorder.desktop",
               "[Desktop Entry]\nType=Application\nName=Recorder\nMimeType=text/plain;\n"
               "Exec=sh -c 'echo \"$1\" >>" +
                   home_ / "opened" + "' sh %f\n");
    home_.file(".config/mimeapps.list", "[Default Applications]\ntext/plain=recorder.desktop\n");
    start();
    ASSERT_TRUE(panelComes());
    client_.type("report");
    ASSERT_TRUE(shows("report one.txt"));
  }

  /// From the context menu of the first row.
  void choose(Entry entry) {
    client_.press({"Down"});
    client_.press({"Shift_L", "F10"});
    ASSERT_TRUE(waitUntil([&] { return client_.hasMenu(); }));
    for (int step = 0; step < static_cast<int>(entry); ++step) client_.press({"Down"});
    client_.press({"Return"});
    ASSERT_TRUE(waitUntil([&] { return !client_.hasMenu(); }));
  }

  const std::string path_ = home_.file("docs/report one.txt", "text");
};

TEST_F(FilesTest, ReturnOpensWithTheUsersDefaultApplication) {
  client_.press({"Return"});
  EXPECT_TRUE(waitUntil([&] { return read("opened") == path_ + "\n"; })) << read("opened");
}

TEST_F(FilesTest, WhatIsCopiedIsReadByOtherPrograms) {
  choose(Entry::copyPath);
  EXPECT_EQ(client_.clipboard("UTF8_STRING"), path_);
  choose(Entry::copyFile);
  EXPECT_NE(client_.clipboard("text/uri-list").find("/docs/report%20one.txt"), std::string::npos);
  EXPECT_EQ(client_.clipboard("x-special/gnome-copied-files").substr(0, 5), "copy\n");
}

TEST_F(FilesTest, ARenamedFileStaysInTheListUnderItsNewName) {
  choose(Entry::rename);
  ASSERT_TRUE(shows("重命名"));
  client_.type("report two");
  client_.press({"Return"});
  EXPECT_TRUE(shows("report two.txt"));
  EXPECT_TRUE(fs::exists(home_ / "docs/report two.txt"));
  EXPECT_FALSE(fs::exists(path_));
}

TEST_F(FilesTest, WhatIsTrashedLeavesTheListAndIsInTheTrash) {
  client_.press({"Down"});
  client_.press({"Delete"});
  ASSERT_TRUE(shows("此操作可在废纸篓中撤销。"));
  client_.press({"Return"});
  EXPECT_TRUE(showsNot("report one.txt，" + home_ / "docs"));
  EXPECT_TRUE(
      waitUntil([&] { return fs::exists(home_ / ".local/share/Trash/files/report one.txt"); }));
  EXPECT_FALSE(fs::exists(path_));
}

TEST_F(FilesTest, FiltersAndBookmarksNarrowAndKeepTheSearch) {
  home_.file("docs/report picture.png");
  EXPECT_TRUE(shows("report picture.png"));
  ASSERT_TRUE(click("图片"));
  EXPECT_TRUE(showsNot("report one.txt"));
  EXPECT_TRUE(shows("report picture.png"));
  client_.press({"Control_L", "d"});
  ASSERT_TRUE(shows("保存书签"));
  client_.type("pictures");
  client_.press({"Return"});
  ASSERT_TRUE(showsNot("保存书签"));
  ASSERT_TRUE(click("清除"));
  ASSERT_TRUE(click("全部"));
  ASSERT_TRUE(shows("常用书签"));
  ASSERT_TRUE(click("pictures"));
  EXPECT_TRUE(shows("report picture.png"));
  EXPECT_EQ(query(), "report");
}

}  // namespace
}  // namespace zelnor::test
