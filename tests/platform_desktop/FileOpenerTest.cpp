#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/desktop/DesktopFileOpener.h"
#include "tests/platform_desktop/PrivateHome.h"
#include "tests/support/RecordLock.h"

namespace zelnor::platform {
namespace {

namespace fs = std::filesystem;
using test::privateHome;

/// A desktop with one application, which notes what it was started with.
class FileOpenerTest : public testing::Test {
 protected:
  FileOpenerTest() {
    const auto program = privateHome().file(
        "program",
        "#!/bin/sh\n"
        "{ printf '%s|%s|%s|' \"$1\" \"$DESKTOP_STARTUP_ID\" \"$XDG_ACTIVATION_TOKEN\"\n"
        "  readlink /proc/$$/fd/* | grep -c secret; } >'" +
            note_ + ".new'\nmv '" + note_ + ".new' '" + note_ + "'\n");
    fs::permissions(program, fs::perms::owner_all);
    privateHome().file("data/applications/viewer.desktop",
                       "[Desktop Entry]\nType=Application\nName=Viewer\nExec=" + program +
                           " %f\nMimeType=text/plain;inode/directory;\n");
    privateHome().file("config/mimeapps.list",
                       "[Default Applications]\ntext/plain=viewer.desktop\n"
                       "inode/directory=viewer.desktop\n");
  }
  ~FileOpenerTest() override { fs::remove(note_); }

  /// What the application noted, once it has.
  [[nodiscard]] std::string noted() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!fs::exists(note_) && std::chrono::steady_clock::now() < deadline)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    std::ifstream file(note_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const std::string note_ = privateHome() / "note";
  DesktopFileOpener opener_;
};

TEST_F(FileOpenerTest, TheApplicationGetsTheBytesOfThePathTheActivationAndNothingElseOfOurs) {
  setenv("DESKTOP_STARTUP_ID", "our own", /*overwrite=*/1);
  // Opened by code that does not think of other programs.
  const int ours = open(privateHome().file("secret").c_str(), O_RDONLY);
  const auto path = privateHome().file("odd\n%20\xff;$(x).txt", "x");
  opener_.open(path, {.token = "id_TIME1"});
  EXPECT_EQ(noted(), path + "|id_TIME1|id_TIME1|0\n");
  fs::remove(note_);
  opener_.open(path, {});
  EXPECT_EQ(noted(), path + "|||0\n");
  unsetenv("DESKTOP_STARTUP_ID");
  close(ours);
}

TEST_F(FileOpenerTest, SaysWhyNothingOpens) {
  EXPECT_THROW(opener_.open(privateHome() / "vanished", {}), FileError);
  const auto fifo = privateHome() / "opener-fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), S_IRUSR), 0);
  EXPECT_THROW(opener_.open(fifo, {}), FileError);  // for which there is no application
  EXPECT_THROW(opener_.reveal(privateHome() / "no/such", {}), FileError);
}

TEST_F(FileOpenerTest, TheLocksThatTheProcessHasOnTheFileStay) {
  // What it is does not show in its name, and not in another of its names.
  const auto path = privateHome().file("database.unknown", "text");
  const auto link = privateHome() / "link to database";
  fs::create_symlink(path, link);
  const test::RecordLock lock(path);
  ASSERT_TRUE(lock.isHeld());
  for (const auto& name : {path, link}) {
    opener_.open(name, {});
    EXPECT_THAT(noted(), testing::StartsWith(name + "|"));
    fs::remove(note_);
    EXPECT_TRUE(lock.isHeld()) << name;
  }
}

TEST_F(FileOpenerTest, WithoutAFileManagerTheFolderIsOpened) {
  const auto path = privateHome().file("folder \xff/file", "x");
  opener_.reveal(path, {.token = "id_TIME2"});
  EXPECT_THAT(noted(), testing::StartsWith(fs::path(path).parent_path().string() + "|id_TIME2|"));
}

}  // namespace
}  // namespace zelnor::platform
