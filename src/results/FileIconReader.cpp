#include "results/FileIconReader.h"

#include <system_error>
#include <utility>

#include <QBuffer>
#include <QByteArray>
#include <QImageReader>

#include "platform/AtomicFile.h"

namespace zelnor {

namespace {

constexpr std::size_t kReadIconBytes = std::size_t{2} << 20U;
/// Nobody draws icons of this size; whoever makes one wants to see programs fail.
constexpr int kMaxSide = 4096;

/// The picture in this file, at most `pixels` wide and high; null if it is none.
QImage readImage(const std::string& path, int pixels) {
  std::optional<std::string> content;
  try {
    content = platform::readFile(path);
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): as good as none
  }
  if (!content) return {};
  auto bytes = QByteArray::fromRawData(content->data(), static_cast<qsizetype>(content->size()));
  QBuffer buffer(&bytes);
  QImageReader reader(&buffer);
  const auto size = reader.size();
  if (!size.isValid() || size.width() > kMaxSide || size.height() > kMaxSide) return {};
  const bool isDrawn = reader.format().startsWith("svg");
  if (isDrawn || size.width() > pixels || size.height() > pixels) {
    reader.setScaledSize(size.scaled(pixels, pixels, Qt::KeepAspectRatio).expandedTo({1, 1}));
  }
  return reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

std::string nameFor(const std::vector<std::string>& names, int pixels) {
  auto all = std::to_string(pixels);
  for (const auto& name : names) all += '/' + name;
  return all;
}

}  // namespace

std::size_t costOf(const QImage& image) {
  constexpr std::size_t kAround = 512;  // keys, paths, nodes
  return static_cast<std::size_t>(image.sizeInBytes()) + kAround;
}

FileIconReader::FileIconReader(std::unique_ptr<platform::FileAppearances> appearances,
                               std::unique_ptr<platform::IconFinder> finder)
    : appearances_(std::move(appearances)), finder_(std::move(finder)), icons_(kReadIconBytes) {}

FileIconAnswer FileIconReader::read(const FileIconRequest& request) {
  const auto appearance = appearances_->appearance(request.path, request.isFolder);
  FileIconAnswer answer{.key = request.key, .image = {}, .icon = {}};
  if (!appearance.thumbnail.empty()) answer.image = readImage(appearance.thumbnail, request.pixels);
  if (!answer.image.isNull()) return answer;
  answer.icon = nameFor(appearance.iconNames, request.pixels);
  answer.image = icon(answer.icon, appearance.iconNames, request.pixels);
  return answer;
}

QImage FileIconReader::icon(const std::string& icon, const std::vector<std::string>& names,
                            int pixels) {
  if (const auto* known = icons_.find(icon)) return *known;
  const auto path = finder_->find(names, pixels);
  auto image = path ? readImage(*path, pixels) : QImage();
  icons_.insert(icon, image, costOf(image));
  return image;
}

}  // namespace zelnor
