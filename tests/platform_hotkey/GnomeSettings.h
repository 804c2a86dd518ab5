#pragma once

#include <string>
#include <vector>

#include "platform/desktop/GLib.h"

namespace zelnor::test {

/// GNOME's settings of keyboard shortcuts, in the memory of this process alone, with schemas of the
/// test's own. Those that a test changes it resets.
class GnomeSettings {
 public:
  GnomeSettings();
  ~GnomeSettings();
  GnomeSettings(const GnomeSettings&) = delete;
  GnomeSettings& operator=(const GnomeSettings&) = delete;

  /// The paths in the list of the user's shortcuts.
  std::vector<std::string> list();
  void setList(const std::vector<std::string>& paths);
  /// "name|command|binding".
  static std::string shortcutAt(const std::string& path);
  static void setShortcutAt(const std::string& path, const std::string& binding);
  static void setWindowKey(const std::vector<std::string>& accelerators);

  /// How often the list was changed, as far as the main context has told.
  [[nodiscard]] int changes() const { return changes_; }

 private:
  platform::GObjectPointer<GSettings> list_;
  int changes_ = 0;
};

/// Schemas that have nothing to do with GNOME.
GSettingsSchemaSource* foreignSchemas();

}  // namespace zelnor::test
