#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/HotkeyConfiguration.h"
#include "platform/desktop/GLib.h"

namespace zelnor::platform {

/// One shortcut of ours among those that the user made in GNOME's settings, at a path of its own;
/// GNOME starts a program when it is pressed. Nothing else there is changed. All of it may wait for
/// the disk and the settings' service; one thread.
class GnomeShortcut {
 public:
  /// The settings of GNOME's keyboard shortcuts; nothing on a system without. `schemas` outlives
  /// them.
  static std::optional<GnomeShortcut> find(
      GSettingsSchemaSource* schemas = g_settings_schema_source_get_default());

  /// Makes the shortcut, in place of an earlier one of ours; answers the code (see Combination.h)
  /// if that is refused, and then there is none of ours.
  std::optional<int> install(const HotkeyConfiguration& combination, const std::string& command);
  /// No effect if there is none.
  void remove();

 private:
  GnomeShortcut(GSettingsSchemaSource* schemas, GObjectPointer<GSettings> list,
                GObjectPointer<GSettings> ours)
      : schemas_(schemas), list_(std::move(list)), ours_(std::move(ours)) {}

  [[nodiscard]] bool isTaken(const HotkeyConfiguration& combination) const;
  void setListed(bool isListed);

  GSettingsSchemaSource* schemas_;
  GObjectPointer<GSettings> list_;  ///< the paths of all shortcuts of the user's
  GObjectPointer<GSettings> ours_;
};

}  // namespace zelnor::platform
