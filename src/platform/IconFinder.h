#pragma once

#include <optional>
#include <span>
#include <string>

namespace zelnor::platform {

/// Finds icons by their names. Waits for the disk; used by one thread at a time.
class IconFinder {
 public:
  virtual ~IconFinder() = default;

  /// The path of the picture that fits best: of the first of these names that the desktop has,
  /// for this width in pixels. Nothing if there is none.
  virtual std::optional<std::string> find(std::span<const std::string> names, int pixels) = 0;
};

}  // namespace zelnor::platform
