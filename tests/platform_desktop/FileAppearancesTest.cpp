#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QBuffer>
#include <QCryptographicHash>
#include <QImage>

#include "platform/FileUris.h"
#include "platform/desktop/DesktopFileAppearances.h"
#include "tests/platform_desktop/PrivateHome.h"
#include "tests/support/RecordLock.h"
#include "tests/support/Unprivileged.h"

namespace zelnor::platform {
namespace {

using test::privateHome;
using testing::Contains;
using testing::IsEmpty;

/// A thumbnail as the standard has it: with the URI of the file and its time in texts that are not
/// compressed, as Qt would write long ones. Their checksums nobody looks at.
void writeThumbnail(const std::string& path, const std::string& uri, std::int64_t mtime) {
  QImage image(128, 128, QImage::Format_ARGB32);
  image.fill(Qt::red);
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  constexpr qsizetype kBehindHeader = 33;
  for (const auto& text : {std::string("Thumb::URI") + '\0' + uri,
                           std::string("Thumb::MTime") + '\0' + std::to_string(mtime)}) {
    const auto length = static_cast<char>(text.size());
    const std::string chunk = std::string{'\0', '\0', '\0', length} + "tEXt" + text + "sums";
    png.insert(kBehindHeader, QByteArray::fromStdString(chunk));
  }
  std::ofstream(path, std::ios::binary) << png.toStdString();
}

/// Names by which every desktop's theme knows what is what.
TEST(DesktopFileAppearances, LooksAtNamesAndTypesAndOpensNothing) {
  DesktopFileAppearances appearances;
  const auto names = [&](const std::string& path, bool isFolder = false) {
    return appearances.appearance(path, isFolder).iconNames;
  };
  EXPECT_THAT(names(privateHome().file("report.pdf", "x")), Contains("application-pdf"));
  EXPECT_THAT(names(privateHome().file("new\nline\xff.png", "x")), Contains("image-x-generic"));
  EXPECT_THAT(names(privateHome().file("empty.pdf", "")), Contains("application-pdf"));
  EXPECT_THAT(names(privateHome().file("nothing", "x")), Contains("text-x-generic"));
  EXPECT_THAT(names(privateHome().folder("folder"), /*isFolder=*/true), Contains("folder"));
  EXPECT_THAT(names(privateHome().path(), /*isFolder=*/true), Contains("user-home"));
  EXPECT_THAT(names(privateHome() / "vanished"), IsEmpty());

  const auto locked = privateHome().file("locked without a type", "x");
  const test::RecordLock lock(locked);
  EXPECT_THAT(names(locked), Contains("text-x-generic"));
  EXPECT_TRUE(lock.isHeld());

  const auto fifo = privateHome() / "fifo.txt";
  ASSERT_EQ(mkfifo(fifo.c_str(), S_IRUSR), 0);
  EXPECT_THAT(names(fifo), Contains("inode-fifo"));  // who opens it waits for ever
  std::filesystem::create_symlink(fifo, privateHome() / "link");
  EXPECT_THAT(names(privateHome() / "link"), Contains("inode-symlink"));

  const auto secret = privateHome().file("secret.pdf", "x");
  std::filesystem::permissions(secret, std::filesystem::perms::none);
  std::filesystem::permissions(privateHome().path(), std::filesystem::perms::others_exec,
                               std::filesystem::perm_options::add);
  const test::Unprivileged ordinaryUser;
  EXPECT_THAT(names(secret), Contains("application-pdf"));
}

TEST(DesktopFileAppearances, TheThumbnailIsThatOfTheFileAsItIs) {
  DesktopFileAppearances appearances;
  const auto path = privateHome().file("photo \xff.jpg", "x");
  EXPECT_EQ(appearances.appearance(path, /*isFolder=*/false).thumbnail, "");

  const auto uri = fileUri(path);
  const auto name =
      QCryptographicHash::hash(QByteArray::fromStdString(uri), QCryptographicHash::Md5)
          .toHex()
          .toStdString();
  const auto thumbnail = privateHome().folder("cache/thumbnails/normal") + "/" + name + ".png";
  struct stat status{};
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  writeThumbnail(thumbnail, uri, status.st_mtim.tv_sec);
  EXPECT_EQ(appearances.appearance(path, /*isFolder=*/false).thumbnail, thumbnail);

  std::filesystem::last_write_time(path,
                                   std::filesystem::last_write_time(path) - std::chrono::hours(1));
  EXPECT_EQ(appearances.appearance(path, /*isFolder=*/false).thumbnail, "");
}

}  // namespace
}  // namespace zelnor::platform
