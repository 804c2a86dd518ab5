#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "platform/desktop/DesktopAccessCheck.h"
#include "platform/desktop/DesktopPermissionSettings.h"
#include "tests/platform_desktop/FakeWatcher.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Unprivileged.h"

namespace zelnor::platform {
namespace {

namespace fs = std::filesystem;

TEST(AccessCheck, AFlatpakNeedsTheFilesOfTheHost) {
  const struct {
    const char* info;
    bool hasAccess;
  } cases[] = {{"[Context]\nfilesystems=xdg-download;host;\n", true},
               {"[Context]\nfilesystems=host:ro;\n", true},
               {"[Context]\nfilesystems=host:rw\n", true},
               {"[Context]\nfilesystems=home;host-os;host-etc;\n", false},
               {"[Context]\nfilesystems=!host;\n", false},
               {"[Context]\nshared=network;\n", false},
               {"", false}};
  for (const auto& [info, hasAccess] : cases) {
    const test::TemporaryFolder root;
    root.file(".flatpak-info", info);
    const DesktopAccessCheck check({.root = root.path(), .home = "/home", .isInSnap = false});
    EXPECT_EQ(check.hasFullDiskAccess(), hasAccess) << info;
  }
}

TEST(AccessCheck, ASnapNeedsTheHomeAndOtherDisks) {
  const test::TemporaryFolder root;
  fs::permissions(root.path(), fs::perms::all);
  root.folder("home/user");
  root.folder("media");
  const DesktopAccessCheck check({.root = root.path(), .home = "/home/user", .isInSnap = true});
  const DesktopAccessCheck outside({.root = root.path(), .home = "/home/user", .isInSnap = false});
  const DesktopAccessCheck homeless({.root = root.path(), .home = "/gone", .isInSnap = true});
  for (const auto* closed : {"home/user", "media"}) {
    const auto usual = fs::status(root / closed).permissions();
    {
      const test::Unprivileged user;
      EXPECT_TRUE(check.hasFullDiskAccess());
    }
    fs::permissions(root / closed, fs::perms::none);
    {
      const test::Unprivileged user;
      EXPECT_FALSE(check.hasFullDiskAccess()) << closed;
      EXPECT_TRUE(outside.hasFullDiskAccess()) << closed;
    }
    fs::permissions(root / closed, usual);
  }
  EXPECT_FALSE(homeless.hasFullDiskAccess());
}

TEST(PermissionSettings, OpensThePageOfTheDesktopThatRunsIfItHasOne) {
  const test::TemporaryFolder folder;
  const auto note = folder / "note";
  const auto program =
      folder.file("gnome-control-center", "#!/bin/sh\necho \"$*|$DESKTOP_STARTUP_ID\" >" + note +
                                              ".new\n/bin/mv " + note + ".new " + note + "\n");
  fs::permissions(program, fs::perms::owner_all);
  const std::string path = std::getenv("PATH");
  setenv("PATH", folder.path().c_str(), /*overwrite=*/1);
  DesktopPermissionSettings settings;
  for (const auto* desktop : {"", "KDE", "XFCE", "NOGNOME"}) {
    setenv("XDG_CURRENT_DESKTOP", desktop, /*overwrite=*/1);
    EXPECT_FALSE(settings.open({})) << desktop;
  }
  setenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME", /*overwrite=*/1);
  EXPECT_TRUE(settings.open({.token = "id_TIME5"}));
  test::runLoopUntil([&] { return fs::exists(note); });
  std::string noted;
  std::getline(std::ifstream(note), noted);
  EXPECT_EQ(noted, "applications|id_TIME5");
  unsetenv("XDG_CURRENT_DESKTOP");
  setenv("PATH", path.c_str(), /*overwrite=*/1);
}

}  // namespace
}  // namespace zelnor::platform
