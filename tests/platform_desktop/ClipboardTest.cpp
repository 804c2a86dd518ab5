#include <string>

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "platform/desktop/DesktopActivationSource.h"
#include "platform/desktop/DesktopClipboard.h"

namespace zelnor::platform {
namespace {

std::string clipboard(const QString& type) {
  return QGuiApplication::clipboard()->mimeData()->data(type).toStdString();
}

const std::string kOddPath = "/odd\n%\xff<b>";

TEST(DesktopClipboard, FilesAreThereForFileManagersAndForTexts) {
  DesktopClipboard().copyFiles({"/plain", kOddPath});
  EXPECT_EQ(clipboard(QStringLiteral("text/uri-list")),
            "file:///plain\r\nfile:///odd%0A%25%FF%3Cb%3E\r\n");
  EXPECT_EQ(clipboard(QStringLiteral("x-special/gnome-copied-files")),
            "copy\nfile:///plain\nfile:///odd%0A%25%FF%3Cb%3E");
  EXPECT_EQ(clipboard(QStringLiteral("text/plain")), "/plain\n" + kOddPath);
}

TEST(DesktopClipboard, TextIsTheBytesAndNoFiles) {
  DesktopClipboard().copyFiles({"/plain"});
  DesktopClipboard().copyText(kOddPath);
  EXPECT_EQ(clipboard(QStringLiteral("text/plain")), kOddPath);
  EXPECT_EQ(clipboard(QStringLiteral("text/plain;charset=utf-8")), kOddPath);
  EXPECT_FALSE(QGuiApplication::clipboard()->mimeData()->hasUrls());
}

TEST(DesktopActivationSource, WithoutAWindowSystemThereIsNone) {
  DesktopActivationSource source;
  int answers = 0;
  source.request([&](const Activation& activation) {
    ++answers;
    EXPECT_EQ(activation, Activation());
  });
  EXPECT_EQ(answers, 1);
}

}  // namespace
}  // namespace zelnor::platform
