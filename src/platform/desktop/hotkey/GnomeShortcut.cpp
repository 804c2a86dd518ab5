#include "platform/desktop/hotkey/GnomeShortcut.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "platform/desktop/hotkey/Combination.h"

namespace zelnor::platform {

namespace {

constexpr const char* kListSchema = "org.gnome.settings-daemon.plugins.media-keys";
constexpr const char* kShortcutSchema =
    "org.gnome.settings-daemon.plugins.media-keys.custom-keybinding";
constexpr const char* kListKey = "custom-keybindings";
constexpr const char* kBindingKey = "binding";
constexpr const char* kOurPath =
    "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/zelnor/";

/// Where GNOME keeps the combinations of its own.
constexpr std::array kDesktopSchemas{"org.gnome.desktop.wm.keybindings",
                                     "org.gnome.shell.keybindings", "org.gnome.mutter.keybindings",
                                     "org.gnome.mutter.wayland.keybindings", kListSchema};

GLibPointer<GSettingsSchema> schemaNamed(GSettingsSchemaSource* schemas, const char* id) {
  if (schemas == nullptr) return {};
  return GLibPointer<GSettingsSchema>(
      g_settings_schema_source_lookup(schemas, id, /*recursive=*/TRUE));
}

bool hasKeys(GSettingsSchema* schema,
             std::initializer_list<std::pair<const char*, const char*>> keys) {
  return std::ranges::all_of(keys, [&](const auto& key) {
    if (g_settings_schema_has_key(schema, key.first) == FALSE) return false;
    auto* const described = g_settings_schema_get_key(schema, key.first);
    const bool isOfType =
        std::string_view(key.second) ==
        g_variant_type_peek_string(g_settings_schema_key_get_value_type(described));
    g_settings_schema_key_unref(described);
    return isOfType;
  });
}

/// `path` is null for a schema that has a place of its own.
GObjectPointer<GSettings> settingsAt(GSettingsSchema* schema, const char* path) {
  return GObjectPointer<GSettings>(g_settings_new_full(schema, /*backend=*/nullptr, path));
}

/// A value that holds one text or several; any other holds none.
std::vector<std::string> textsOf(GVariant* value) {
  if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING) != FALSE) {
    return {g_variant_get_string(value, /*length=*/nullptr)};
  }
  std::vector<std::string> texts;
  if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING_ARRAY) == FALSE) return texts;
  for (gsize at = 0; at < g_variant_n_children(value); ++at) {
    const GLibPointer<GVariant> child(g_variant_get_child_value(value, at));
    texts.emplace_back(g_variant_get_string(child.get(), /*length=*/nullptr));
  }
  return texts;
}

std::vector<std::string> textsAt(GSettings* settings, const char* key) {
  const GLibPointer<GVariant> value(g_settings_get_value(settings, key));
  return textsOf(value.get());
}

bool holds(const std::vector<std::string>& accelerators, const HotkeyConfiguration& combination) {
  return std::ranges::any_of(accelerators, [&](const auto& accelerator) {
    return isSameAccelerator(accelerator, combination);
  });
}

bool isTakenIn(GSettingsSchemaSource* schemas, const char* schemaId,
               const HotkeyConfiguration& combination) {
  const auto schema = schemaNamed(schemas, schemaId);
  // One without a place of its own is not the desktop's.
  if (!schema || g_settings_schema_get_path(schema.get()) == nullptr) return false;
  const auto settings = settingsAt(schema.get(), /*path=*/nullptr);
  const std::unique_ptr<char*, decltype(&g_strfreev)> keys(
      g_settings_schema_list_keys(schema.get()), g_strfreev);
  bool isTaken = false;
  for (char** key = keys.get(); *key != nullptr; ++key) {
    isTaken = isTaken || holds(textsAt(settings.get(), *key), combination);
  }
  return isTaken;
}

bool isCustomTaken(GSettingsSchemaSource* schemas, const std::string& path,
                   const HotkeyConfiguration& combination) {
  // GLib ends the program for a path that is none.
  const bool isPath =
      path.starts_with('/') && path.ends_with('/') && path.find("//") == std::string::npos;
  if (!isPath || path == kOurPath) return false;
  const auto settings = settingsAt(schemaNamed(schemas, kShortcutSchema).get(), path.c_str());
  return holds(textsAt(settings.get(), kBindingKey), combination);
}

void setText(GSettings* settings, const char* key, const std::string& text) {
  g_settings_set_value(settings, key, g_variant_new_string(text.c_str()));
}

}  // namespace

std::optional<GnomeShortcut> GnomeShortcut::find(GSettingsSchemaSource* schemas) {
  const auto list = schemaNamed(schemas, kListSchema);
  const auto shortcut = schemaNamed(schemas, kShortcutSchema);
  if (!list || !shortcut || g_settings_schema_get_path(list.get()) == nullptr ||
      g_settings_schema_get_path(shortcut.get()) != nullptr ||
      !hasKeys(list.get(), {{kListKey, "as"}}) ||
      !hasKeys(shortcut.get(), {{"name", "s"}, {"command", "s"}, {kBindingKey, "s"}})) {
    return std::nullopt;
  }
  return GnomeShortcut(schemas, settingsAt(list.get(), /*path=*/nullptr),
                       settingsAt(shortcut.get(), kOurPath));
}

std::optional<int> GnomeShortcut::install(const HotkeyConfiguration& combination,
                                          const std::string& command) {
  remove();
  const auto accelerator = gnomeAccelerator(combination);
  if (!accelerator) return kHotkeyImpossible;
  if (isTaken(combination) || g_settings_is_writable(list_.get(), kListKey) == FALSE ||
      g_settings_is_writable(ours_.get(), kBindingKey) == FALSE) {
    return kHotkeyTaken;
  }
  setText(ours_.get(), "name", "Zelnor");
  setText(ours_.get(), "command", command);
  setText(ours_.get(), kBindingKey, *accelerator);
  setListed(/*isListed=*/true);
  g_settings_sync();
  return std::nullopt;
}

void GnomeShortcut::remove() {
  setListed(/*isListed=*/false);
  for (const auto* key : {"name", "command", kBindingKey}) g_settings_reset(ours_.get(), key);
  g_settings_sync();
}

bool GnomeShortcut::isTaken(const HotkeyConfiguration& combination) const {
  return std::ranges::any_of(
             kDesktopSchemas,
             [&](const char* id) { return isTakenIn(schemas_, id, combination); }) ||
         std::ranges::any_of(textsAt(list_.get(), kListKey), [&](const auto& path) {
           return isCustomTaken(schemas_, path, combination);
         });
}

void GnomeShortcut::setListed(bool isListed) {
  auto paths = textsAt(list_.get(), kListKey);
  if ((std::ranges::find(paths, kOurPath) != paths.end()) == isListed) return;
  std::erase(paths, kOurPath);
  if (isListed) paths.emplace_back(kOurPath);
  std::vector<const char*> texts;
  texts.reserve(paths.size());
  for (const auto& path : paths) texts.push_back(path.c_str());
  g_settings_set_value(list_.get(), kListKey,
                       g_variant_new_strv(texts.data(), static_cast<gssize>(texts.size())));
}

}  // namespace zelnor::platform
