#include "store/FileRecord.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <string_view>
#include <utility>

namespace zelnor {

namespace {

FileKind kindOf(const platform::FileAttributes& attributes) {
  if (attributes.isSymlink) return FileKind::symlink;
  return attributes.isDirectory ? FileKind::directory : FileKind::file;
}

}  // namespace

std::optional<FileKind> fileKind(std::int64_t rawValue) {
  if (rawValue < 0 || rawValue >= static_cast<std::int64_t>(kAllFileKinds.size()))
    return std::nullopt;
  return kAllFileKinds.at(static_cast<std::size_t>(rawValue));
}

FileRecord FileRecord::from(std::string name, std::string path,
                            const platform::FileAttributes& attributes) {
  FileRecord record;
  record.name = std::move(name);
  record.path = std::move(path);
  record.size = attributes.size;
  record.mtime = attributes.mtime;
  record.kind = kindOf(attributes);
  record.inode = std::bit_cast<std::int64_t>(attributes.inode);
  return record;
}

std::optional<FileRecord> FileRecord::fromPath(const std::string& path) {
  const auto attributes = platform::readAttributes(path);
  if (!attributes) return std::nullopt;
  return from(path.substr(path.rfind('/') + 1), path, *attributes);
}

}  // namespace zelnor

std::size_t std::hash<zelnor::FileRecord>::operator()(
    const zelnor::FileRecord& record) const noexcept {
  std::size_t seed = std::hash<std::string>{}(record.path);
  const auto mix = [&seed](std::size_t value) {
    seed = std::rotl(seed, 7) ^ (value * 0x9E3779B97F4A7C15ULL);
  };
  mix(std::hash<std::string>{}(record.name));
  for (const auto value : {record.id, record.size, record.mtime, record.inode})
    mix(static_cast<std::size_t>(value));
  mix(static_cast<std::size_t>(record.kind));
  return seed;
}
