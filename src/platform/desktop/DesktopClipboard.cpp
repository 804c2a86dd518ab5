#include "platform/desktop/DesktopClipboard.h"

#include <memory>

#include <QByteArray>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "platform/FileUris.h"

namespace zelnor::platform {

namespace {

QByteArray bytesOf(const std::string& text) {
  return {text.data(), static_cast<qsizetype>(text.size())};
}

/// As bytes: a QString would lose what is not UTF-8. Qt adds X11's own names of text; some programs
/// ask for the type with its encoding alone.
void setText(QMimeData& data, const std::string& bytes) {
  data.setData(QStringLiteral("text/plain"), bytesOf(bytes));
  data.setData(QStringLiteral("text/plain;charset=utf-8"), bytesOf(bytes));
}

void put(std::unique_ptr<QMimeData> data) {
  QGuiApplication::clipboard()->setMimeData(data.release());  // takes it over
}

std::string join(const std::vector<std::string>& lines) {
  std::string text;
  for (const auto& line : lines) {
    if (!text.empty()) text += '\n';
    text += line;
  }
  return text;
}

/// What GNOME's file manager and its relatives put on the clipboard and look for.
std::string copiedFiles(const std::vector<std::string>& paths) {
  std::string list = "copy";
  for (const auto& path : paths) list += '\n' + fileUri(path);
  return list;
}

}  // namespace

void DesktopClipboard::copyFiles(const std::vector<std::string>& paths) {
  auto data = std::make_unique<QMimeData>();
  data->setData(QStringLiteral("text/uri-list"), bytesOf(uriList(paths)));
  data->setData(QStringLiteral("x-special/gnome-copied-files"), bytesOf(copiedFiles(paths)));
  setText(*data, join(paths));
  put(std::move(data));
}

void DesktopClipboard::copyText(const std::string& bytes) {
  auto data = std::make_unique<QMimeData>();
  setText(*data, bytes);
  put(std::move(data));
}

}  // namespace zelnor::platform
