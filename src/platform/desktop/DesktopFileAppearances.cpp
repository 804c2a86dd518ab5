#include "platform/desktop/DesktopFileAppearances.h"

#include <memory>
#include <string_view>

#include "platform/desktop/GLib.h"

namespace zelnor::platform {

namespace {

/// The icon of a file is derived from its content type, and asking for it would open the file to
/// find that out; a folder has nothing to open.
constexpr const char* kAboutFile = G_FILE_ATTRIBUTE_STANDARD_FAST_CONTENT_TYPE
    "," G_FILE_ATTRIBUTE_STANDARD_TYPE "," G_FILE_ATTRIBUTE_STANDARD_SIZE
    "," G_FILE_ATTRIBUTE_THUMBNAIL_PATH "," G_FILE_ATTRIBUTE_THUMBNAIL_IS_VALID;
constexpr const char* kAboutFolder = G_FILE_ATTRIBUTE_STANDARD_ICON;

/// What a theme should have if it has nothing better.
constexpr const char* kLastResort = "text-x-generic";

/// GIO calls every empty file text, whatever its name promises.
bool isEmptyFile(GFileInfo* info) {
  return g_file_info_get_file_type(info) == G_FILE_TYPE_REGULAR && g_file_info_get_size(info) == 0;
}

GObjectPointer<GIcon> iconForName(const std::string& path) {
  const auto name = path.substr(path.rfind('/') + 1);
  const std::unique_ptr<char, decltype(&g_free)> type(
      g_content_type_guess(name.c_str(), /*data=*/nullptr, /*data_size=*/0,
                           /*result_uncertain=*/nullptr),
      &g_free);
  return GObjectPointer<GIcon>(g_content_type_get_icon(type.get()));
}

GObjectPointer<GIcon> iconOf(GFileInfo* info, const std::string& path, bool isFolder) {
  if (isFolder) {
    auto* const icon = g_file_info_get_icon(info);
    return GObjectPointer<GIcon>(icon == nullptr ? nullptr
                                                 : static_cast<GIcon*>(g_object_ref(icon)));
  }
  if (isEmptyFile(info)) return iconForName(path);
  const char* const type =
      g_file_info_get_attribute_string(info, G_FILE_ATTRIBUTE_STANDARD_FAST_CONTENT_TYPE);
  return GObjectPointer<GIcon>(type == nullptr ? nullptr : g_content_type_get_icon(type));
}

std::vector<std::string> namesOf(GIcon* icon) {
  std::vector<std::string> names;
  // A type check by hand: GLib's macro for it is a cast of C's.
  const bool hasNames =
      icon != nullptr && g_type_check_instance_is_a(reinterpret_cast<GTypeInstance*>(icon),
                                                    G_TYPE_THEMED_ICON) != FALSE;
  if (!hasNames) return names;
  const auto* name = g_themed_icon_get_names(reinterpret_cast<GThemedIcon*>(icon));
  for (; *name != nullptr; ++name) {
    if (!std::string_view(*name).ends_with("-symbolic")) names.emplace_back(*name);
  }
  return names;
}

std::string thumbnailOf(GFileInfo* info) {
  const char* const path =
      g_file_info_get_attribute_byte_string(info, G_FILE_ATTRIBUTE_THUMBNAIL_PATH);
  const bool isValid =
      g_file_info_get_attribute_boolean(info, G_FILE_ATTRIBUTE_THUMBNAIL_IS_VALID) != FALSE;
  return path != nullptr && isValid ? path : "";
}

}  // namespace

FileAppearance DesktopFileAppearances::appearance(const std::string& path, bool isFolder) {
  const GObjectPointer<GFileInfo> info(g_file_query_info(
      fileAt(path).get(), isFolder ? kAboutFolder : kAboutFile, G_FILE_QUERY_INFO_NOFOLLOW_SYMLINKS,
      /*cancellable=*/nullptr, /*error=*/nullptr));
  if (!info) return {};
  FileAppearance appearance{.iconNames = namesOf(iconOf(info.get(), path, isFolder).get()),
                            .thumbnail = thumbnailOf(info.get())};
  if (!isFolder) appearance.iconNames.emplace_back(kLastResort);
  return appearance;
}

}  // namespace zelnor::platform
