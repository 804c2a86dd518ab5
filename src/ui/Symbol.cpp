#include "ui/Symbol.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <QTransform>

// NOLINTNEXTLINE(misc-use-anonymous-namespace): Q_INIT_RESOURCE works in no namespace
static void initSymbols() {
  Q_INIT_RESOURCE(symbols);
}  // a static library's resources wait to be asked

namespace zelnor::ui {

namespace {

/// The symbol in black, `side` device pixels large.
QPixmap drawn(QLatin1String name, int side) {
  [[maybe_unused]] static const bool initialized = (initSymbols(), true);
  QSvgRenderer drawing(QStringLiteral(":/symbols/%1.svg").arg(name));
  if (!drawing.isValid())
    throw std::logic_error("no symbol " + std::string(name.data(), name.size()));
  QPixmap pixmap(side, side);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  drawing.render(&painter);
  return pixmap;
}

QPixmap tinted(QLatin1String name, int side, const QColor& color) {
  const auto key =
      QStringLiteral("symbol %1 %2 %3").arg(name).arg(side).arg(color.name(QColor::HexArgb));
  QPixmap pixmap;
  if (QPixmapCache::find(key, &pixmap)) return pixmap;
  pixmap = drawn(name, side);
  QPainter painter(&pixmap);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(pixmap.rect(), color);
  painter.end();
  QPixmapCache::insert(key, pixmap);
  return pixmap;
}

class SymbolEngine final : public QIconEngine {
 public:
  SymbolEngine(QLatin1String name, const QColor& color) : name_(name), color_(color) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/,
             QIcon::State /*state*/) override {
    paintSymbol(*painter, rect, name_, color_);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
    return tinted(name_, std::min(size.width(), size.height()), color_);
  }
  [[nodiscard]] QIconEngine* clone() const override { return new SymbolEngine(*this); }

 private:
  QLatin1String name_;
  QColor color_;
};

}  // namespace

void paintSymbol(QPainter& painter, const QRectF& box, QLatin1String name, const QColor& color) {
  const double ratio = pixelsOf(painter);
  const auto side = static_cast<int>(std::lround(std::min(box.width(), box.height()) * ratio));
  if (side <= 0) return;
  auto pixmap = tinted(name, side, color);
  pixmap.setDevicePixelRatio(ratio);
  // On whole pixels of the device, or the edges blur.
  const auto toDevice = painter.deviceTransform();
  const QPointF corner = toDevice.map(box.center()) - QPointF(side, side) / 2;
  const QPointF onPixel(std::round(corner.x()), std::round(corner.y()));
  painter.drawPixmap(toDevice.inverted().map(onPixel), pixmap);
}

double pixelsOf(const QPainter& painter) { return painter.deviceTransform().m11(); }

QIcon symbolIcon(QLatin1String name, const QColor& color) {
  return QIcon(new SymbolEngine(name, color));
}

}  // namespace zelnor::ui
