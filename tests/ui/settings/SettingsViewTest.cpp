#include <array>

#include <QKeyEvent>

#include "platform/KeyCodes.h"
#include "tests/ui/settings/SettingsFixture.h"
#include "ui/settings/HotkeyRecorderView.h"
#include "ui/settings/SettingsList.h"

namespace zelnor::ui {
namespace {

using platform::HotkeyConfiguration;

class SettingsViewTest : public SettingsFixture {
 protected:
  [[nodiscard]] HotkeyRecorderView& recorder() const {
    return *view_->findChild<HotkeyRecorderView*>();
  }
  void press(int key, Qt::KeyboardModifiers modifiers, std::uint32_t position) {
    const auto evdev = platform::evdevFromVirtual(position).value_or(0);
    QKeyEvent event(QEvent::KeyPress, key, modifiers, evdev + platform::kX11Offset, 0, 0);
    QApplication::sendEvent(&recorder(), &event);
  }
  [[nodiscard]] SettingsList& list(QStringView title) const {
    for (auto* candidate : view_->findChildren<SettingsList*>()) {
      if (candidate->accessibleName() == title) return *candidate;
    }
    throw std::logic_error("no such list");
  }
};

TEST_F(SettingsViewTest, RecordsPositionsWithModifiersAndNothingElse) {
  struct Row {
    int key;
    Qt::KeyboardModifiers modifiers;
    std::uint32_t position;
    bool stillRecords;
    bool changes;
  };
  const std::array rows{
      Row{Qt::Key_K, Qt::NoModifier, 40, true, false},
      Row{Qt::Key_Tab, Qt::NoModifier, 48, true, false},
      Row{Qt::Key_Control, Qt::ControlModifier, 59, true, false},
      Row{Qt::Key_VolumeUp, Qt::ControlModifier, 9999, true, false},
      Row{Qt::Key_Escape, Qt::NoModifier, 53, false, false},
      Row{Qt::Key_Q, Qt::MetaModifier | Qt::AltModifier, 40, false, true},
  };
  std::vector<HotkeyConfiguration> changes;
  QObject::connect(view_.get(), &SettingsView::hotkeyConfigChanged,
                   [&](const HotkeyConfiguration& config) { changes.push_back(config); });
  for (const auto& row : rows) {
    QTest::mouseClick(&recorder(), Qt::LeftButton);
    ASSERT_TRUE(recorder().isRecording());
    press(row.key, row.modifiers, row.position);
    EXPECT_EQ(recorder().isRecording(), row.stillRecords) << row.key;
    EXPECT_EQ(!changes.empty(), row.changes) << row.key;
  }
  ASSERT_EQ(changes.size(), 1U);
  EXPECT_EQ(changes[0].keyCode, 40U);
  EXPECT_EQ(changes[0].modifiers, 2304U);
  settle();
  EXPECT_EQ(HotkeyConfiguration::load(defaults_), changes[0]);
  click(u"恢复默认");
  click(u"恢复默认");
  ASSERT_EQ(changes.size(), 3U) << "also when it is the default already";
  EXPECT_EQ(changes[2], HotkeyConfiguration());
  EXPECT_EQ(preferences_.hotkey(), HotkeyConfiguration());
}

TEST_F(SettingsViewTest, LosingTheKeyboardEndsRecordingAndTheAppHearsOfBoth) {
  std::vector<bool> heard;
  QObject::connect(view_.get(), &SettingsView::recordingChanged,
                   [&](bool isRecording) { heard.push_back(isRecording); });
  QTest::mouseClick(&recorder(), Qt::LeftButton);
  view_->tabs().setFocus();
  EXPECT_FALSE(recorder().isRecording());
  EXPECT_EQ(heard, (std::vector{true, false}));
  EXPECT_EQ(preferences_.hotkey(), HotkeyConfiguration());
}

TEST_F(SettingsViewTest, SwitchesFollowWhatIsReallySo) {
  click(u"开机自动启动");
  EXPECT_TRUE(button(u"开机自动启动")->isChecked());
  click(u"开机自动启动");
  loginItem_.refuses = true;
  click(u"开机自动启动");
  EXPECT_FALSE(button(u"开机自动启动")->isChecked());
  click(u"失去焦点时自动关闭窗口");
  EXPECT_EQ(defaults_.get<bool>("AutoCloseOnFocusLoss"), true);
  EXPECT_TRUE(shows(u"1.0.0"));
}

TEST_F(SettingsViewTest, ARebuildDisablesBothButtonsAndTakesTheNoteAway) {
  const auto note = QStringLiteral(u"更改将在下次重建索引后生效");
  go(1);
  EXPECT_TRUE(shows(u"尚未索引"));
  EXPECT_FALSE(shows(note));
  click(u"跳过符号链接");
  EXPECT_TRUE(shows(note));
  click(u"重建索引");
  EXPECT_TRUE(shows(u"状态：索引中"));
  ASSERT_NE(button(u"索引中...", 1), nullptr);
  EXPECT_FALSE(button(u"索引中...", 0)->isEnabled());
  EXPECT_FALSE(button(u"索引中...", 1)->isEnabled());
  maintainer_.running->set(true);
  settle();
  EXPECT_FALSE(shows(note));
  click(u"立即重建索引");
  maintainer_.running->fail(std::make_exception_ptr(std::runtime_error("disk full")));
  settle();
  EXPECT_TRUE(shows(u"disk full"));
  EXPECT_TRUE(button(u"重建索引")->isEnabled());
}

TEST_F(SettingsViewTest, RemovingAFolderStaysHereAndWithoutAnIndexNothingCanBeSet) {
  index_->addPath(IndexViewModel::PathList::included, "/media/a");
  index_->addPath(IndexViewModel::PathList::included, "/media/a");
  go(1);
  click(u"移除“/media/a”");
  EXPECT_EQ(index_->configuration().includedPaths, std::vector<std::string>{"/home/me"});
  EXPECT_EQ(IndexConfiguration::saved(defaults_)->includedPaths.size(), 3U);
  view_->setIndex(nullptr);
  settle();
  EXPECT_EQ(button(u"移除“/home/me”"), nullptr);
  for (const auto title : {u"立即重建索引", u"重建索引", u"跳过符号链接"}) {
    EXPECT_FALSE(button(title)->isEnabled());
  }
}

TEST_F(SettingsViewTest, BookmarksFollowTheCategoryAndTheTrashOnlyWhatIsSelected) {
  const auto work = addCategory("work");
  add("ab");
  add("c", work);
  go(2);
  auto& categories = list(u"分类");
  auto& bookmarks = list(u"书签");
  EXPECT_EQ(bookmarks.count(), 3);
  categories.setCurrentRow(1);
  EXPECT_EQ(bookmarks_.selectedCategoryID(), work);
  EXPECT_EQ(bookmarks.count(), 1);
  EXPECT_EQ(button(u"删除书签"), nullptr);
  bookmarks.setCurrentRow(0);
  click(u"删除书签");
  EXPECT_EQ(bookmarks_.bookmarks().size(), 2U);
  EXPECT_EQ(button(u"删除书签"), nullptr);
  QTest::mouseClick(categories.viewport(), Qt::LeftButton, {},
                    categories.viewport()->rect().bottomLeft() - QPoint(-5, 5));
  EXPECT_EQ(bookmarks_.selectedCategoryID(), std::nullopt);
  EXPECT_EQ(bookmarks.count(), 2);
  for (const auto& [name, expected] : {std::pair("", 2U), std::pair(" ", 3U)}) {
    click(u"新建分类");
    QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(name));
    click(u"确定");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(bookmarks_.categories().size(), expected);
  }
}

}  // namespace
}  // namespace zelnor::ui
