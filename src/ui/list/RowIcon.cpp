#include "ui/list/RowIcon.h"

#include <cmath>
#include <string_view>

#include <QImage>
#include <QLatin1String>
#include <QPainter>

#include "results/FileIcons.h"
#include "search/FileTypeCategory.h"
#include "ui/Symbol.h"

namespace zelnor::ui {

namespace {

constexpr double kBoxRadius = 5;
constexpr double kBoxSymbol = 13;

FileTypeCategory categoryOf(const FileRecord& record) {
  if (record.kind == FileKind::directory) return FileTypeCategory::folder;
  const std::string_view name = record.name;
  const auto dot = name.rfind('.');
  return categoryForExtension(dot == std::string_view::npos ? std::string_view{}
                                                            : name.substr(dot + 1));
}

QLatin1String symbolOf(FileTypeCategory category) {
  switch (category) {
    case FileTypeCategory::folder:
      return QLatin1String("folder.fill");
    case FileTypeCategory::image:
      return QLatin1String("photo.fill");
    case FileTypeCategory::video:
      return QLatin1String("film.fill");
    case FileTypeCategory::audio:
      return QLatin1String("music.note");
    case FileTypeCategory::archive:
      return QLatin1String("archivebox.fill");
    case FileTypeCategory::code:
      return QLatin1String("chevron.left.forwardslash.chevron.right");
    case FileTypeCategory::executable:
      return QLatin1String("app.fill");
    case FileTypeCategory::all:
    case FileTypeCategory::document:
      break;
  }
  return QLatin1String("doc.fill");
}

void paintSquare(QPainter& painter, const QRectF& box, FileTypeCategory category) {
  const auto color = iconColor(category);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                                    static_cast<float>(color.blue)));
  painter.drawRoundedRect(box, kBoxRadius, kBoxRadius);
  QRectF symbol(0, 0, kBoxSymbol, kBoxSymbol);
  symbol.moveCenter(box.center());
  paintSymbol(painter, symbol, symbolOf(category), Qt::white);
}

void paintImage(QPainter& painter, const QRectF& box, const QImage& image) {
  QRectF place({}, QSizeF(image.size()).scaled(box.size(), Qt::KeepAspectRatio));
  place.moveCenter(box.center());
  painter.drawImage(place, image);
}

}  // namespace

void paintRowIcon(QPainter& painter, const QRect& box, const FileRecord& record, FileIcons* icons) {
  const auto pixels = static_cast<int>(std::lround(box.width() * pixelsOf(painter)));
  const auto image = icons != nullptr ? icons->icon(record, pixels) : QImage();
  if (image.isNull()) {
    paintSquare(painter, box, categoryOf(record));
  } else {
    paintImage(painter, box, image);
  }
}

}  // namespace zelnor::ui
