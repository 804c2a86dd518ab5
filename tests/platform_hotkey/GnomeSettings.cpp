#include "tests/platform_hotkey/GnomeSettings.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/platform_hotkey/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::test {

namespace {

constexpr const char* kMediaKeys = "org.gnome.settings-daemon.plugins.media-keys";
constexpr const char* kCustomKey = "org.gnome.settings-daemon.plugins.media-keys.custom-keybinding";
constexpr const char* kWindowKeys = "org.gnome.desktop.wm.keybindings";
constexpr const char* kList = "custom-keybindings";
constexpr const char* kWindowKey = "switch-windows";

constexpr const char* kSchemas = R"(<schemalist>
  <schema id="org.gnome.settings-daemon.plugins.media-keys"
          path="/org/gnome/settings-daemon/plugins/media-keys/">
    <key name="custom-keybindings" type="as"><default>[]</default></key>
    <key name="home" type="as"><default>['&lt;Super&gt;h']</default></key>
    <key name="volume-step" type="i"><default>6</default></key>
  </schema>
  <schema id="org.gnome.settings-daemon.plugins.media-keys.custom-keybinding">
    <key name="name" type="s"><default>''</default></key>
    <key name="binding" type="s"><default>''</default></key>
    <key name="command" type="s"><default>''</default></key>
  </schema>
  <schema id="org.gnome.desktop.wm.keybindings" path="/org/gnome/desktop/wm/keybindings/">
    <key name="switch-windows" type="as"><default>[]</default></key>
  </schema>
</schemalist>)";
constexpr const char* kForeign = R"(<schemalist>
  <schema id="org.example" path="/org/example/"><key name="a" type="s"><default>''</default></key></schema>
</schemalist>)";

/// GLib looks for schemas once in a process, so they are there before anything else.
class Schemas final : public testing::Environment {
 public:
  static std::unique_ptr<TemporaryFolder>& folder() {
    static std::unique_ptr<TemporaryFolder> folder;
    return folder;
  }
  void SetUp() override {
    folder() = std::make_unique<TemporaryFolder>();
    compile("ours", kSchemas);
    compile("foreign", kForeign);
    setenv("GSETTINGS_SCHEMA_DIR", (*folder() / "ours").c_str(), /*overwrite=*/1);
    setenv("GSETTINGS_BACKEND", "memory", /*overwrite=*/1);
    setenv("XDG_DATA_DIRS", (*folder() / "nothing").c_str(), /*overwrite=*/1);
    setenv("XDG_DATA_HOME", (*folder() / "nothing").c_str(), /*overwrite=*/1);
    setenv("HOME", folder()->path().c_str(), /*overwrite=*/1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", /*overwrite=*/1);
  }
  void TearDown() override { folder().reset(); }

 private:
  static void compile(const std::string& name, const char* content) {
    folder()->file(name + "/test.gschema.xml", content);
    if (!runProgram({"glib-compile-schemas", "--strict", *folder() / name})) {
      throw std::runtime_error("glib-compile-schemas");
    }
  }
};

// NOLINTNEXTLINE(cppcoreguidelines-owning-memory): GoogleTest takes it over
const auto* const environment = testing::AddGlobalTestEnvironment(new Schemas);

platform::GObjectPointer<GSettings> customKeyAt(const std::string& path) {
  return platform::GObjectPointer<GSettings>(g_settings_new_with_path(kCustomKey, path.c_str()));
}

std::string textOf(GSettings* settings, const char* key) {
  const platform::GLibPointer<char> text(g_settings_get_string(settings, key));
  return text.get();
}

void setTexts(GSettings* settings, const char* key, const std::vector<std::string>& texts) {
  std::vector<const char*> pointers;
  for (const auto& text : texts) pointers.push_back(text.c_str());
  pointers.push_back(nullptr);
  g_settings_set_strv(settings, key, pointers.data());
}

}  // namespace

GnomeSettings::GnomeSettings() : list_(g_settings_new(kMediaKeys)) {
  const auto count = +[](GSettings* /*settings*/, const char* /*key*/, gpointer changes) {
    ++*static_cast<int*>(changes);
  };
  g_signal_connect(list_.get(), "changed::custom-keybindings", reinterpret_cast<GCallback>(count),
                   &changes_);
  list();  // the signal is only sent for what was read
}

GnomeSettings::~GnomeSettings() {
  for (const auto& path : list()) g_settings_reset(customKeyAt(path).get(), "binding");
  g_settings_reset(list_.get(), kList);
  setWindowKey({});
  g_signal_handlers_disconnect_by_data(list_.get(), &changes_);
}

std::vector<std::string> GnomeSettings::list() {
  const std::unique_ptr<char*, decltype(&g_strfreev)> paths(g_settings_get_strv(list_.get(), kList),
                                                            g_strfreev);
  std::vector<std::string> result;
  for (char** path = paths.get(); *path != nullptr; ++path) result.emplace_back(*path);
  return result;
}

void GnomeSettings::setList(const std::vector<std::string>& paths) {
  setTexts(list_.get(), kList, paths);
}

std::string GnomeSettings::shortcutAt(const std::string& path) {
  const auto settings = customKeyAt(path);
  return textOf(settings.get(), "name") + '|' + textOf(settings.get(), "command") + '|' +
         textOf(settings.get(), "binding");
}

void GnomeSettings::setShortcutAt(const std::string& path, const std::string& binding) {
  g_settings_set_string(customKeyAt(path).get(), "binding", binding.c_str());
}

void GnomeSettings::setWindowKey(const std::vector<std::string>& accelerators) {
  const platform::GObjectPointer<GSettings> keys(g_settings_new(kWindowKeys));
  setTexts(keys.get(), kWindowKey, accelerators);
}

GSettingsSchemaSource* foreignSchemas() {
  return g_settings_schema_source_new_from_directory((*Schemas::folder() / "foreign").c_str(),
                                                     /*parent=*/nullptr, /*trusted=*/FALSE,
                                                     /*error=*/nullptr);
}

}  // namespace zelnor::test
