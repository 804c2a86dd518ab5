#include "app/OpenFile.h"

#include <QByteArray>
#include <QDesktopServices>
#include <QUrl>

namespace zelnor::app {

void openFile(const std::string& path) {
  // Escaped byte by byte: a path that is not UTF-8 would not survive as text.
  const auto escaped = QByteArray::fromStdString(path).toPercentEncoding(/*exclude=*/"/");
  QDesktopServices::openUrl(QUrl::fromEncoded("file://" + escaped));
}

}  // namespace zelnor::app
