#include "platform/desktop/IconTheme.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "platform/desktop/GLib.h"

namespace zelnor::platform {

namespace {

constexpr const char* kFallbackTheme = "hicolor";
constexpr std::array kUsualThemes{"Adwaita",    "breeze", "Papirus", "Yaru",
                                  "elementary", "oxygen", "gnome",   "Tango"};
constexpr std::array kExtensions{".png", ".svg", ".xpm"};

bool isThere(const std::string& path) { return ::access(path.c_str(), R_OK) == 0; }

std::string below(std::string folder, const std::string& name) {
  folder += '/';
  return folder += name;
}

std::string indexOf(const std::string& baseFolder, const std::string& theme) {
  return below(baseFolder, theme) + "/index.theme";
}

bool isInstalled(const std::string& theme, std::span<const std::string> baseFolders) {
  if (theme.empty() || theme.find('/') != std::string::npos) return false;
  return std::ranges::any_of(baseFolders, [&](const std::string& baseFolder) {
    return isThere(indexOf(baseFolder, theme));
  });
}

/// What is set for GNOME's desktop and those that share its settings; empty if nothing is. Asking
/// for settings that are not installed ends the process, so they are looked up first.
std::string themeOfGnome() {
  constexpr const char* kSchema = "org.gnome.desktop.interface";
  constexpr const char* kKey = "icon-theme";
  auto* const source = g_settings_schema_source_get_default();
  if (source == nullptr) return {};
  const GLibPointer<GSettingsSchema> schema(
      g_settings_schema_source_lookup(source, kSchema, /*recursive=*/TRUE));
  if (!schema || g_settings_schema_has_key(schema.get(), kKey) == FALSE) return {};
  const GObjectPointer<GSettings> settings(
      g_settings_new_full(schema.get(), /*backend=*/nullptr, /*path=*/nullptr));
  const GLibPointer<char> name(g_settings_get_string(settings.get(), kKey));
  return name.get();
}

std::optional<std::string> withExtension(const std::string& stem) {
  for (const auto* extension : kExtensions) {
    auto path = stem + extension;
    if (isThere(path)) return path;
  }
  return std::nullopt;
}

}  // namespace

IconTheme::IconTheme(std::string preferred, std::vector<std::string> baseFolders)
    : preferred_(std::move(preferred)), baseFolders_(std::move(baseFolders)) {}

std::optional<std::string> IconTheme::find(std::span<const std::string> names, int pixels) {
  load();
  // A less fitting icon of this theme looks better among its others than the best of another.
  for (const auto& theme : themes_) {
    for (const auto& name : names) {
      if (auto found = findIn(theme, name, pixels)) return found;
    }
  }
  for (const auto& name : names) {
    if (auto found = findWithoutTheme(name)) return found;
  }
  return std::nullopt;
}

void IconTheme::load() {
  if (std::exchange(isLoaded_, true)) return;
  add(chooseIconTheme(preferred_, baseFolders_));
  add(kFallbackTheme);
}

void IconTheme::add(const std::string& name) {
  if (name.find('/') != std::string::npos || std::ranges::find(seen_, name) != seen_.end()) return;
  seen_.push_back(name);
  Theme theme;
  std::optional<IconThemeIndex> index;
  for (const auto& baseFolder : baseFolders_) {
    const auto folder = below(baseFolder, name);
    if (!isThere(folder)) continue;
    theme.folders.push_back(folder);
    if (!index) index = IconThemeIndex::read(indexOf(baseFolder, name));
  }
  if (!index) return;
  theme.index = std::move(*index);
  const auto inherits = theme.index.inherits;
  themes_.push_back(std::move(theme));
  for (const auto& parent : inherits) {
    if (parent != kFallbackTheme) add(parent);  // always the last
  }
}

std::optional<std::string> IconTheme::findIn(const Theme& theme, const std::string& name,
                                             int pixels) {
  if (name.find('/') != std::string::npos) return std::nullopt;
  std::optional<std::string> closest;
  int distance = std::numeric_limits<int>::max();
  for (const auto& folder : theme.index.folders) {
    if (folder.distance(pixels) >= distance) continue;
    for (const auto& base : theme.folders) {
      auto found = withExtension(below(below(base, folder.path), name));
      if (!found) continue;
      closest = std::move(found);
      distance = folder.distance(pixels);
      break;
    }
    if (distance == 0) break;
  }
  return closest;
}

std::optional<std::string> IconTheme::findWithoutTheme(const std::string& name) const {
  if (name.find('/') != std::string::npos) return std::nullopt;
  for (const auto& baseFolder : baseFolders_) {
    if (auto found = withExtension(below(baseFolder, name))) return found;
  }
  return std::nullopt;
}

std::vector<std::string> iconBaseFolders() {
  std::vector<std::string> folders{std::string(g_get_home_dir()) + "/.icons",
                                   std::string(g_get_user_data_dir()) + "/icons"};
  for (const auto* const* folder = g_get_system_data_dirs(); *folder != nullptr; ++folder) {
    folders.push_back(std::string(*folder) + "/icons");
  }
  folders.emplace_back("/usr/share/pixmaps");
  return folders;
}

std::string chooseIconTheme(const std::string& preferred,
                            std::span<const std::string> baseFolders) {
  if (preferred != kFallbackTheme && isInstalled(preferred, baseFolders)) return preferred;
  auto gnome = themeOfGnome();
  if (isInstalled(gnome, baseFolders)) return gnome;
  for (const auto* usual : kUsualThemes) {
    if (isInstalled(usual, baseFolders)) return usual;
  }
  return kFallbackTheme;
}

}  // namespace zelnor::platform
