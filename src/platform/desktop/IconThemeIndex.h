#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zelnor::platform {

/// One folder of icons of about the same size.
struct IconFolder {
  enum class Kind : std::uint8_t { fixed, scalable, threshold };

  std::string path;  ///< relative to the theme's
  Kind kind = Kind::threshold;
  int size = 0;
  int minSize = 0;
  int maxSize = 0;
  int threshold = 2;
  int scale = 1;

  /// How far its icons are from this width in pixels; 0 if they are meant for it.
  [[nodiscard]] int distance(int pixels) const;
};

/// What a theme says of itself in its file index.theme.
struct IconThemeIndex {
  std::vector<std::string> inherits;
  std::vector<IconFolder> folders;

  /// Nothing if there is no such file or if it is none of a theme.
  static std::optional<IconThemeIndex> read(const std::string& path);
};

}  // namespace zelnor::platform
