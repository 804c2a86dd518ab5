#pragma once

#include <QWidget>

#include "platform/HotkeyConfiguration.h"

namespace zelnor::ui {

/// Shows a key combination; pressed, it records the next one, by the position of the key whatever
/// the layout. Main thread only.
class HotkeyRecorderView final : public QWidget {
  Q_OBJECT

 public:
  explicit HotkeyRecorderView(const platform::HotkeyConfiguration& config, QWidget* parent);

  [[nodiscard]] const platform::HotkeyConfiguration& currentConfig() const {
    return currentConfig_;
  }
  void setCurrentConfig(const platform::HotkeyConfiguration& config);
  [[nodiscard]] bool isRecording() const { return isRecording_; }

  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  /// The user has recorded this one; recording ends after that.
  void recorded(const zelnor::platform::HotkeyConfiguration& config);
  /// While one is recorded the registered one must not be heard.
  void isRecordingChanged(bool isRecording);

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void setRecording(bool isRecording);
  void record(const QKeyEvent& event);
  void describe();
  [[nodiscard]] QString text() const;

  platform::HotkeyConfiguration currentConfig_;
  bool isRecording_ = false;
};

}  // namespace zelnor::ui
