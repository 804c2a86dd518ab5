#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QTest>

#include "platform/KeyCodes.h"
#include "ui/settings/HotkeyRecorderView.h"

namespace zelnor::ui {
namespace {

using Config = platform::HotkeyConfiguration;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kF = 3;
constexpr std::uint32_t kF1 = 122;

class HotkeyRecorderTest : public testing::Test {
 protected:
  HotkeyRecorderTest() {
    QObject::connect(&recorder_, &HotkeyRecorderView::recorded, [this](const Config& config) {
      recorded_.push_back(config);
      // Else the combination that this one replaces would be heard once more.
      EXPECT_TRUE(recorder_.isRecording());
    });
    QObject::connect(&recorder_, &HotkeyRecorderView::isRecordingChanged,
                     [this](bool isRecording) { recording_.push_back(isRecording); });
    window_.show();
    window_.activateWindow();
    QApplication::processEvents();
  }
  /// The key at the position `keyCode`, whatever the layout makes of it.
  void press(std::uint32_t keyCode, Qt::KeyboardModifiers held, int key = Qt::Key_unknown) {
    const auto scanCode = *platform::evdevFromVirtual(keyCode) + platform::kX11Offset;
    QKeyEvent event(QEvent::KeyPress, key, held, scanCode, /*nativeVirtualKey=*/0,
                    /*nativeModifiers=*/0);
    QApplication::sendEvent(&recorder_, &event);
  }
  void click() { QTest::mouseClick(&recorder_, Qt::LeftButton); }

  QWidget window_;
  HotkeyRecorderView recorder_{Config(), &window_};
  std::vector<Config> recorded_;
  std::vector<bool> recording_;
};

TEST_F(HotkeyRecorderTest, RecordsThePositionWithAtLeastOneModifier) {
  press(kF, Qt::ControlModifier);
  EXPECT_THAT(recorded_, IsEmpty());
  click();
  press(kF, Qt::NoModifier);
  press(kF, Qt::KeypadModifier);
  EXPECT_TRUE(recorder_.isRecording());
  press(kF, Qt::MetaModifier | Qt::ShiftModifier);
  EXPECT_FALSE(recorder_.isRecording());
  click();
  press(kF1, Qt::ControlModifier | Qt::AltModifier);
  click();
  press(kF, Qt::ShiftModifier);
  EXPECT_THAT(recorded_, ElementsAre(Config{.keyCode = kF, .modifiers = 0x0300},
                                     Config{.keyCode = kF1, .modifiers = 0x1800},
                                     Config{.keyCode = kF, .modifiers = 0x0200}));
  EXPECT_THAT(recording_, ElementsAre(true, false, true, false, true, false));
}

TEST_F(HotkeyRecorderTest, EscapeALossOfFocusAndAPressElsewhereChangeNothing) {
  const std::uint32_t escape = 53;
  click();
  press(escape, Qt::NoModifier, Qt::Key_Escape);
  click();
  recorder_.clearFocus();
  press(kF, Qt::ControlModifier);
  click();
  click();
  EXPECT_TRUE(recorder_.isRecording());
  QTest::mouseClick(&window_, Qt::LeftButton, {}, window_.rect().bottomRight());
  press(kF, Qt::ControlModifier);
  EXPECT_THAT(recorded_, IsEmpty());
  EXPECT_EQ(recorder_.currentConfig(), Config());
  EXPECT_THAT(recording_, ElementsAre(true, false, true, false, true, false));
}

}  // namespace
}  // namespace zelnor::ui
