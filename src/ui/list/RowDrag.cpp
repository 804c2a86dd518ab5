#include "ui/list/RowDrag.h"

#include <string>
#include <vector>

#include <QDrag>
#include <QMimeData>
#include <QPainter>
#include <QWidget>

#include "platform/FileUris.h"
#include "ui/DisplayText.h"
#include "ui/Palette.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr int kBadge = 18;
constexpr int kBadgePadding = 5;
constexpr int kOverlap = 8;  // of badge and icon

}  // namespace

std::unique_ptr<QMimeData> filesToDrop(std::span<const SearchResult> files) {
  std::vector<std::string> paths;
  paths.reserve(files.size());
  for (const auto& file : files) paths.push_back(file.record.path);
  auto data = std::make_unique<QMimeData>();
  data->setData(QStringLiteral("text/uri-list"),
                QByteArray::fromStdString(platform::uriList(paths)));
  return data;
}

void dragOut(QWidget& source, std::span<const SearchResult> files, const QPixmap& picture) {
  auto* drag = new QDrag(&source);  // deletes itself
  drag->setMimeData(filesToDrop(files).release());
  drag->setPixmap(picture);
  drag->exec(Qt::CopyAction);
}

QPixmap dragPicture(const QPixmap& icon, std::size_t count) {
  if (count < 2) return icon;
  const auto text = countText(static_cast<std::int64_t>(count));
  const auto font = type::font(type::kDetail, QFont::DemiBold);
  const int height = type::scaled(kBadge);
  const int width =
      std::max(QFontMetrics(font).horizontalAdvance(text) + 2 * kBadgePadding, height);
  const auto size = icon.deviceIndependentSize().toSize();

  const double ratio = icon.devicePixelRatio();
  const QSize whole(size.width() - kOverlap + width, size.height() - kOverlap + height);
  QPixmap picture(whole * ratio);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.drawPixmap(0, 0, icon);
  const QRect badge(whole.width() - width, whole.height() - height, width, height);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette::kAccent);
  painter.drawRoundedRect(badge, height / 2.0, height / 2.0);
  painter.setFont(font);
  painter.setPen(Qt::white);
  painter.drawText(badge, Qt::AlignCenter, text);
  return picture;
}

}  // namespace zelnor::ui
