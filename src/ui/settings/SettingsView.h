#pragma once

#include <QWidget>

#include "indexer/IndexStatus.h"
#include "ui/settings/GeneralSettingsView.h"

class QStackedWidget;

namespace zelnor {
class BookmarkViewModel;
class IndexViewModel;
}  // namespace zelnor

namespace zelnor::ui {

class IndexSettingsView;
class SettingsTabs;

/// What the settings show and change. Everything here outlives them.
struct SettingsServices {
  GeneralSettings general;
  IndexViewModel& index;
  BookmarkViewModel& bookmarks;
};

/// The content of the settings window: three pages, of which one is chosen by its tab. Main thread
/// only.
class SettingsView final : public QWidget {
  Q_OBJECT

 public:
  static constexpr QSize kSize{560, 440};
  static constexpr QSize kSmallest{520, 400};

  explicit SettingsView(const SettingsServices& services, QWidget* parent = nullptr);

  /// For the index page.
  void setStatus(const IndexStatus& status);

 Q_SIGNALS:
  /// See GeneralSettingsView.
  void hotkeyConfigChanged(const zelnor::platform::HotkeyConfiguration& config);
  void isRecordingChanged(bool isRecording);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  SettingsTabs* tabs_;
  QStackedWidget* pages_;
  IndexSettingsView* index_;
};

}  // namespace zelnor::ui
