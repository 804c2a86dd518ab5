#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include <gio/gdesktopappinfo.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/desktop/AutostartEntry.h"
#include "platform/desktop/DesktopLoginItem.h"
#include "platform/desktop/GLib.h"
#include "tests/platform_desktop/FakeWatcher.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Unprivileged.h"

namespace zelnor::platform {
namespace {

namespace fs = std::filesystem;
using Status = LoginItem::Status;
using testing::HasSubstr;
using testing::Not;

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class LoginItemTest : public testing::Test {
 protected:
  LoginItemTest() { makeProgram("bin/zelnor"); }

  std::string makeProgram(const std::string& name) const {
    auto path = folder_.file(name,
                             "#!/bin/sh\nprintf '%s|' \"$0\" \"$@\" >\"$NOTE.new\"\n"
                             "mv \"$NOTE.new\" \"$NOTE\"\n");
    fs::permissions(path, fs::perms::owner_all | fs::perms::group_all | fs::perms::others_all);
    return path;
  }
  [[nodiscard]] DesktopLoginItem item(const std::string& program) const {
    return DesktopLoginItem(
        {.userFolder = folder_ / "config/autostart",
         .systemFolders = {folder_ / "xdg1/autostart", folder_ / "xdg2/autostart"},
         .program = program,
         .searchPath = {folder_ / "no-such", folder_ / "bin"}});
  }
  /// The installed one.
  [[nodiscard]] DesktopLoginItem item() const { return item(folder_ / "bin/zelnor"); }
  void entry(const std::string& lines) const {
    folder_.file("config/autostart/zelnor.desktop", "[Desktop Entry]\n" + lines);
  }
  [[nodiscard]] std::string entry() const { return contentOf(entryPath_); }

  const test::TemporaryFolder folder_;
  const std::string entryPath_ = folder_ / "config/autostart/zelnor.desktop";
};

TEST_F(LoginItemTest, IsWhatTheEntrySaysToADesktop) {
  const std::string runs = "Exec=zelnor --background\n";
  const struct {
    std::string lines;
    Status status;
  } cases[] = {
      {runs, Status::enabled},
      {runs + "Hidden=false\nX-GNOME-Autostart-enabled=true\nTryExec=zelnor\n", Status::enabled},
      {runs + "Hidden=true\n", Status::notRegistered},
      {runs + "X-GNOME-Autostart-enabled=false\n", Status::notRegistered},
      {runs + "Hidden=what\n", Status::enabled},
      {runs + "TryExec=/no/such/program\n", Status::notFound},
      {runs + "TryExec=no-such-program\n", Status::notFound},
      {runs + "OnlyShowIn=Other;\n", Status::notRegistered},
      {runs + "OnlyShowIn=Other;Tested;\n", Status::enabled},
      {runs + "NotShowIn=Tested;\n", Status::notRegistered},
      {"Name=Zelnor\n", Status::notRegistered},
      {"\xff\xfe damaged", Status::notRegistered},
  };
  setenv("XDG_CURRENT_DESKTOP", "Some:Tested", /*overwrite=*/1);
  EXPECT_EQ(item().status(), Status::notRegistered);
  for (const auto& [lines, status] : cases) {
    entry(lines);
    EXPECT_EQ(item().status(), status) << lines;
    auto it = item();
    it.registerItem();
    EXPECT_EQ(item().status(), Status::enabled) << entry();
    it.unregisterItem();
    EXPECT_EQ(item().status(), Status::notRegistered) << entry();
  }
  unsetenv("XDG_CURRENT_DESKTOP");
}

TEST_F(LoginItemTest, TheInstalledProgramIsStartedByItsNameAndAnyOtherByItsPath) {
  auto installed = item();
  installed.registerItem();
  EXPECT_THAT(entry(), HasSubstr("\nExec=zelnor --background\n"));
  EXPECT_THAT(entry(), HasSubstr("\nTryExec=zelnor\n"));
  struct stat attributes{};
  ASSERT_EQ(stat(entryPath_.c_str(), &attributes), 0);
  EXPECT_EQ(attributes.st_mode & 0777U, 0600U);

  fs::remove(entryPath_);
  auto other = item(makeProgram("checkout/zelnor"));
  other.registerItem();
  EXPECT_THAT(entry(), HasSubstr("\nTryExec=" + folder_ / "checkout/zelnor" + "\n"));
}

TEST_F(LoginItemTest, ADesktopStartsTheProgramWhateverItsPathIs) {
  const auto note = folder_ / "note";
  setenv("NOTE", note.c_str(), /*overwrite=*/1);
  for (const auto* name : {"plain", "a b", "$HOME;`x`", "quote\"'", "back\\slash\\", "中文",
                           "new\nline", "~tilde", "#hash", "(round)"}) {
    const auto program = makeProgram(std::string(name) + "/zelnor");
    auto it = item(program);
    it.registerItem();
    EXPECT_EQ(it.status(), Status::enabled) << name;
    const GObjectPointer<GDesktopAppInfo> app(
        g_desktop_app_info_new_from_filename(entryPath_.c_str()));
    ASSERT_TRUE(app) << entry();
    GLibError error;
    g_app_info_launch(G_APP_INFO(app.get()), nullptr, nullptr, error.out());
    ASSERT_FALSE(error) << entry();
    test::runLoopUntil([&] { return fs::exists(note); });
    EXPECT_EQ(contentOf(note), program + "|--background|");
    fs::remove(note);
    fs::remove(entryPath_);
  }
  unsetenv("NOTE");
  auto unspeakable = item(makeProgram("\xff/zelnor"));
  EXPECT_THROW(unspeakable.registerItem(), FileError);
  EXPECT_EQ(unspeakable.status(), Status::notRegistered);
}

TEST_F(LoginItemTest, WhatTheUserWroteStays) {
  entry("# mine\nName=My search\nExec=old\nX-Mine=1\nComment[de]=Suche\n\n[Other]\nA=b\n");
  auto it = item();
  it.unregisterItem();
  it.registerItem();
  for (const auto* line :
       {"# mine\n", "Name=My search\n", "X-Mine=1\n", "Comment[de]=Suche\n", "[Other]\nA=b\n"})
    EXPECT_THAT(entry(), HasSubstr(line));
}

TEST_F(LoginItemTest, ALinkStaysALinkUnlessItLeadsToNoFile) {
  const auto elsewhere =
      folder_.file("dotfiles/zelnor.desktop", "[Desktop Entry]\nExec=zelnor\nHidden=true\n");
  folder_.folder("config/autostart");
  fs::create_symlink(elsewhere, entryPath_);
  auto it = item();
  it.registerItem();
  EXPECT_TRUE(fs::is_symlink(entryPath_));
  EXPECT_EQ(it.status(), Status::enabled);
  fs::remove(entryPath_);
  fs::create_symlink("/dev/null", entryPath_);
  EXPECT_EQ(it.status(), Status::notRegistered);
  it.registerItem();
  EXPECT_FALSE(fs::is_symlink(entryPath_));
  EXPECT_EQ(it.status(), Status::enabled);
}

TEST_F(LoginItemTest, TheSystemsEntryCountsUntilTheUserHasOne) {
  folder_.file("xdg2/autostart/zelnor.desktop",
               "[Desktop Entry]\nName=Zelnor\nExec=zelnor --background\n");
  auto it = item();
  EXPECT_EQ(it.status(), Status::enabled);
  it.registerItem();
  EXPECT_FALSE(fs::exists(entryPath_));
  it.unregisterItem();
  EXPECT_EQ(it.status(), Status::notRegistered);
  EXPECT_THAT(entry(), HasSubstr("Hidden=true"));
  it.registerItem();
  EXPECT_EQ(it.status(), Status::enabled);
  EXPECT_THAT(entry(), Not(HasSubstr("Hidden")));

  fs::remove(entryPath_);
  folder_.file("xdg1/autostart/zelnor.desktop", "[Desktop Entry]\nExec=zelnor\nHidden=true\n");
  EXPECT_EQ(it.status(), Status::notRegistered);
}

TEST_F(LoginItemTest, SaysWhatItCannotDoAndChangesNothing) {
  entry("Exec=zelnor\nHidden=true\n");
  const auto before = entry();
  constexpr auto kReadable =
      fs::perms::all & ~(fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write);
  fs::permissions(folder_.path(), kReadable);
  fs::permissions(folder_ / "config/autostart", kReadable);
  {
    const test::Unprivileged user;
    auto it = item();
    try {
      it.registerItem();
      ADD_FAILURE() << "registered";
    } catch (const std::system_error& error) {
      EXPECT_THAT(error.what(), HasSubstr("zelnor.desktop"));
      EXPECT_THAT(error.what(), HasSubstr("Permission denied"));
    }
    EXPECT_EQ(it.status(), Status::notRegistered);
  }
  EXPECT_EQ(entry(), before);
  fs::permissions(folder_.path(), fs::perms::owner_all);
  fs::permissions(folder_ / "config/autostart", fs::perms::owner_all);
}

TEST(QuotedForExec, APercentSignIsNoFieldCode) { EXPECT_EQ(quotedForExec("/a/%f"), "/a/%%f"); }

}  // namespace
}  // namespace zelnor::platform
