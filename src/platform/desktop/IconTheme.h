#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/IconFinder.h"
#include "platform/desktop/IconThemeIndex.h"

namespace zelnor::platform {

/// Where a theme's icons are, in the order in which every desktop looks: in the theme, in those it
/// inherits from, in "hicolor", and beside all themes. The disk is read when the first
/// icon is looked for.
class IconTheme final : public IconFinder {
 public:
  /// The theme is `chooseIconTheme(preferred, baseFolders)`. `baseFolders` hold folders of themes,
  /// and icons that belong to none; the first counts most.
  IconTheme(std::string preferred, std::vector<std::string> baseFolders);

  std::optional<std::string> find(std::span<const std::string> names, int pixels) override;

 private:
  struct Theme {
    std::vector<std::string> folders;  ///< one below each base folder that has the theme
    IconThemeIndex index;
  };

  void load();
  void add(const std::string& name);
  [[nodiscard]] static std::optional<std::string> findIn(const Theme& theme,
                                                         const std::string& name, int pixels);
  [[nodiscard]] std::optional<std::string> findWithoutTheme(const std::string& name) const;

  const std::string preferred_;
  const std::vector<std::string> baseFolders_;
  bool isLoaded_ = false;
  std::vector<std::string> seen_;  ///< the names of the themes below, and of those that are missing
  std::vector<Theme> themes_;      ///< in the order in which they are asked
};

/// Where a desktop keeps icons, for this user and for all.
std::vector<std::string> iconBaseFolders();

/// The theme to use: `preferred` if it is installed and more than "hicolor", which only fills gaps;
/// otherwise the one that is set for GNOME's desktop, or the first of the usual ones that is there.
/// Waits for the disk.
std::string chooseIconTheme(const std::string& preferred, std::span<const std::string> baseFolders);

}  // namespace zelnor::platform
