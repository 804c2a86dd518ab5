#pragma once

#include <QScrollArea>

#include "platform/HotkeyConfiguration.h"

namespace zelnor {
class LaunchAtLoginService;
class Preferences;
}  // namespace zelnor

namespace zelnor::ui {

class FormSection;
class HotkeyRecorderView;

/// What the general page shows and changes. Everything here outlives it.
struct GeneralSettings {
  LaunchAtLoginService& launchService;
  Preferences& preferences;
  QString version;
  QString dataFolder;  ///< as users write it
};

/// The general page of the settings: start at login, the hot key, how the panel behaves, and what
/// this program is. Main thread only.
class GeneralSettingsView final : public QScrollArea {
  Q_OBJECT

 public:
  explicit GeneralSettingsView(GeneralSettings settings, QWidget* parent = nullptr);

 Q_SIGNALS:
  /// The user has chosen this combination, which may be the one there was.
  void hotkeyConfigChanged(const zelnor::platform::HotkeyConfiguration& config);
  /// While a combination is recorded none must be heard.
  void isRecordingChanged(bool isRecording);

 private:
  [[nodiscard]] FormSection* makeStartSection();
  [[nodiscard]] FormSection* makeHotkeySection();
  [[nodiscard]] FormSection* makeWindowSection();
  [[nodiscard]] FormSection* makeAboutSection();
  void setHotkey(const platform::HotkeyConfiguration& config);

  GeneralSettings settings_;
  QWidget* page_;
  HotkeyRecorderView* recorder_ = nullptr;
};

}  // namespace zelnor::ui
