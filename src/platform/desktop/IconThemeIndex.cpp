#include "platform/desktop/IconThemeIndex.h"

#include <algorithm>
#include <string_view>

#include "platform/desktop/GLib.h"

namespace zelnor::platform {

namespace {

constexpr const char* kThemeGroup = "Icon Theme";

std::vector<std::string> readList(GKeyFile* file, const char* key) {
  std::vector<std::string> values;
  const GLibPointer<char> text(g_key_file_get_string(file, kThemeGroup, key, /*error=*/nullptr));
  std::string_view left(text ? text.get() : "");
  while (!left.empty()) {
    const auto end = std::min(left.find(','), left.size());
    if (end > 0) values.emplace_back(left.substr(0, end));
    left.remove_prefix(std::min(end + 1, left.size()));
  }
  return values;
}

int readNumber(GKeyFile* file, const std::string& group, const char* key, int otherwise) {
  GLibError error;
  const int number = g_key_file_get_integer(file, group.c_str(), key, error.out());
  return error ? otherwise : number;
}

IconFolder::Kind readKind(GKeyFile* file, const std::string& group) {
  const GLibPointer<char> text(
      g_key_file_get_string(file, group.c_str(), "Type", /*error=*/nullptr));
  const std::string_view kind(text ? text.get() : "");
  if (kind == "Fixed") return IconFolder::Kind::fixed;
  if (kind == "Scalable") return IconFolder::Kind::scalable;
  return IconFolder::Kind::threshold;
}

IconFolder readFolder(GKeyFile* file, const std::string& path) {
  IconFolder folder;
  folder.path = path;
  folder.kind = readKind(file, path);
  folder.size = readNumber(file, path, "Size", folder.size);
  folder.minSize = readNumber(file, path, "MinSize", folder.size);
  folder.maxSize = readNumber(file, path, "MaxSize", folder.size);
  folder.threshold = readNumber(file, path, "Threshold", folder.threshold);
  folder.scale = readNumber(file, path, "Scale", folder.scale);
  return folder;
}

int outside(int value, int low, int high) {
  if (value < low) return low - value;
  return value > high ? value - high : 0;
}

}  // namespace

int IconFolder::distance(int pixels) const {
  switch (kind) {
    case Kind::fixed:
      return outside(pixels, size * scale, size * scale);
    case Kind::scalable:
      return outside(pixels, minSize * scale, maxSize * scale);
    case Kind::threshold:
      return outside(pixels, (size - threshold) * scale, (size + threshold) * scale);
  }
  return 0;
}

std::optional<IconThemeIndex> IconThemeIndex::read(const std::string& path) {
  const GLibPointer<GKeyFile> file(g_key_file_new());
  const bool isTheme = g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE,
                                                 /*error=*/nullptr) != FALSE &&
                       g_key_file_has_group(file.get(), kThemeGroup) != FALSE;
  if (!isTheme) return std::nullopt;
  IconThemeIndex index;
  index.inherits = readList(file.get(), "Inherits");
  for (const auto* key : {"Directories", "ScaledDirectories"}) {
    for (const auto& folder : readList(file.get(), key)) {
      if (g_key_file_has_group(file.get(), folder.c_str()) != FALSE)
        index.folders.push_back(readFolder(file.get(), folder));
    }
  }
  return index;
}

}  // namespace zelnor::platform
