#include "ui/tray/TrayPictures.h"

#include <cstddef>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QPixmap>
#include <QtEndian>

#include "ui/Symbol.h"

namespace zelnor::ui {

namespace {

constexpr int kTraySides[] = {16, 22, 24, 32, 48, 64};
constexpr int kMenuPictureSide = 32;
/// As far from white as from black for the eye.
constexpr QColor kOnAnyBar(0x7f, 0x7f, 0x7f);

QImage image(QLatin1String symbol, int side) {
  return symbolIcon(symbol, kOnAnyBar)
      .pixmap(QSize(side, side), /*devicePixelRatio=*/1)
      .toImage()
      .convertToFormat(QImage::Format_ARGB32);
}

/// The bytes of each pixel in the order of the network.
std::string pixels(const QImage& image) {
  const auto count = static_cast<std::size_t>(image.width()) * image.height();
  std::string bytes(count * sizeof(quint32), '\0');
  qToBigEndian<quint32>(image.constBits(), static_cast<qsizetype>(count), bytes.data());
  return bytes;
}

}  // namespace

std::vector<platform::TrayItem::Picture> trayPictures(QLatin1String symbol) {
  std::vector<platform::TrayItem::Picture> pictures;
  for (const int side : kTraySides)
    pictures.push_back({.side = side, .pixels = pixels(image(symbol, side))});
  return pictures;
}

std::string menuPicture(QLatin1String symbol) {
  QByteArray png;
  QBuffer buffer(&png);
  image(symbol, kMenuPictureSide).save(&buffer, "PNG");
  return png.toStdString();
}

}  // namespace zelnor::ui
