#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include "tests/ui/list/ListFixture.h"
#include "ui/Alert.h"
#include "ui/Sheet.h"
#include "ui/list/RenameSheetView.h"
#include "ui/list/TrashConfirmation.h"

namespace zelnor::ui {
namespace {

using testing::ElementsAre;

/// What lies over the panel: menus, alerts, sheets.
class ResultListQuestionsTest : public ListFixture {
 protected:
  void openMenu(int row) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, place(row),
                            rows_.viewport()->mapToGlobal(place(row)));
    QApplication::sendEvent(rows_.viewport(), &event);
  }
  /// The title of each entry of the menu that is open; an empty one for a separator.
  static std::vector<std::string> entries() {
    std::vector<std::string> titles;
    for (const auto* action : menu()->actions()) {
      titles.push_back(action->text().toStdString());
      EXPECT_EQ(action->icon().isNull(), action->isSeparator());
    }
    return titles;
  }
  void choose(int row, std::string_view title) {
    openMenu(row);
    const auto actions = menu()->actions();
    const auto action = std::ranges::find(
        actions, title, [](const QAction* entry) { return entry->text().toStdString(); });
    ASSERT_NE(action, actions.end());
    chooseIn(*menu(), **action);
  }
  static void chooseIn(QMenu& menu, QAction& action) {
    menu.setActiveAction(&action);
    QTest::keyClick(&menu, Qt::Key_Return);
    QApplication::processEvents();
  }
  static QMenu* menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

  [[nodiscard]] Sheet* sheet() const {
    const auto sheets = panel_.findChildren<Sheet*>(QString(), Qt::FindDirectChildrenOnly);
    const auto open = std::ranges::find_if(sheets, &Sheet::isVisible);
    return open == sheets.end() ? nullptr : *open;
  }
  /// All that the sheet says, buttons last.
  [[nodiscard]] std::vector<std::string> texts() const {
    std::vector<std::string> texts;
    for (const auto* label : sheet()->findChildren<QLabel*>()) {
      texts.push_back(label->text().toStdString());
    }
    for (const auto* button : sheet()->findChildren<QPushButton*>()) {
      texts.push_back(button->accessibleName().toStdString());
    }
    return texts;
  }
  void answer(Qt::Key key) { QTest::keyClick(panel_.window()->focusWidget(), key); }
};

TEST_F(ResultListQuestionsTest, OffersWhatCanBeDoneWithARow) {
  showMatches(10);
  click(1);
  openMenu(4);
  EXPECT_THAT(entries(), ElementsAre("打开", "在 Finder 中显示", "快速预览", "", "复制文件",
                                     "复制路径", "", "重命名", "", "移到废纸篓"));
  menu()->close();
  for (const auto* title : {"打开", "在 Finder 中显示", "快速预览", "复制文件", "复制路径"}) {
    choose(4, title);
  }
  EXPECT_EQ(asked(), "open name4;reveal name4;preview name4;copy name4,;copy path name4,;");
  EXPECT_THAT(model_.selectedIDs(), ElementsAre(1));

  click(3, Qt::ControlModifier);
  choose(3, "复制文件");
  choose(1, "复制路径");
  choose(3, "打开");
  EXPECT_EQ(asked(), "copy name1,name3,;copy path name1,name3,;open name3;");
}

TEST_F(ResultListQuestionsTest, ActsOnTheRowThatWasMeantAlthoughTheListHasChanged) {
  showMatches(10);
  openMenu(4);
  source_.firstRow = 3;
  refresh();
  chooseIn(*menu(), *menu()->actions().front());
  EXPECT_EQ(asked(), "open name4;");

  choose(2, "移到废纸篓");
  source_.firstRow = 7;
  refresh();
  answer(Qt::Key_Return);
  EXPECT_EQ(asked(), "delete name5,;");
}

TEST_F(ResultListQuestionsTest, OpensTheMenuByKeyboardAtTheCurrentRow) {
  showMatches(100);
  press(Qt::Key_Menu);
  EXPECT_EQ(menu(), nullptr);
  view_.enter();
  press(Qt::Key_End);
  for (const auto& [key, modifiers] :
       {std::pair(Qt::Key_Menu, Qt::NoModifier), std::pair(Qt::Key_F10, Qt::ShiftModifier)}) {
    press(key, modifiers);
    ASSERT_NE(menu(), nullptr);
    chooseIn(*menu(), *menu()->actions().front());
    EXPECT_EQ(asked(), "open name99;");
  }
}

TEST_F(ResultListQuestionsTest, AsksBeforeFilesGoToTheTrash) {
  showMatches(10);
  view_.enter();
  model_.setSelectedIDs({});
  press(Qt::Key_Delete);
  EXPECT_EQ(sheet(), nullptr);

  click(5);
  click(2, Qt::ControlModifier);
  for (const auto key : {Qt::Key_Delete, Qt::Key_Backspace}) {
    press(key);
    EXPECT_THAT(texts(), ElementsAre("将 2 个文件移到废纸篓？", "此操作可在废纸篓中撤销。", "取消",
                                     "移到废纸篓"));
    answer(Qt::Key_Escape);
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_TRUE(rows_.hasFocus());
  }
  EXPECT_EQ(asked(), "");
  press(Qt::Key_Delete);
  answer(Qt::Key_Return);
  EXPECT_EQ(asked(), "delete name2,name5,;");

  choose(7, "移到废纸篓");
  EXPECT_EQ(texts().front(), "将「name7」移到废纸篓？");
  answer(Qt::Key_Return);
  choose(5, "移到废纸篓");
  answer(Qt::Key_Return);
  EXPECT_EQ(asked(), "delete name7,;delete name2,name5,;");
}

TEST_F(ResultListQuestionsTest, ShowsNamesInQuestionsAsTheyAre) {
  SearchResult odd;
  odd.record.name = "<b>%1</b>&amp;\n\xE2\x80\xAE.txt";
  confirmTrash({odd}, panel_, {});
  EXPECT_EQ(texts().front(), "将「<b>%1</b>&amp;␊⟨U+202E⟩.txt」移到废纸篓？");
  EXPECT_EQ(sheet()->findChild<QLabel*>()->textFormat(), Qt::PlainText);
  sheet()->cancel();

  // Where a line has to end within a name, and where a text is too long for an alert.
  const QString pictures = QStringLiteral(u"😀").repeated(63);
  odd.record.name = pictures.toStdString();
  confirmTrash({odd}, panel_, {});
  auto question = sheet()->findChild<QLabel*>()->text();
  EXPECT_TRUE(question.contains(u'\u200B'));
  EXPECT_TRUE(question.remove(u'\u200B').contains(pictures));
  for (const auto* before : {u"", u"x"}) {
    const auto* alert = new Alert(QString::fromUtf16(before) + pictures.repeated(4), {},
                                  /*isWarning=*/true, panel_);
    const auto text = alert->findChild<QLabel*>()->text();
    EXPECT_TRUE(text.contains(u'…') && text.isValidUtf16());
  }
}

TEST_F(ResultListQuestionsTest, AsksForANewName) {
  showMatches(10);
  rows_.setFocus();
  choose(4, "重命名");
  EXPECT_THAT(texts(), ElementsAre("重命名", "取消", "确定"));
  auto* field = sheet()->findChild<QLineEdit*>();
  EXPECT_EQ(panel_.focusWidget(), field);
  EXPECT_EQ(field->placeholderText(), QStringLiteral(u"文件名"));
  EXPECT_EQ(field->width(), 300);
  EXPECT_EQ(field->text(), QStringLiteral("name4"));
  source_.firstRow = 7;
  refresh();
  QTest::keyClicks(field, QStringLiteral(" new /name "));
  answer(Qt::Key_Return);
  EXPECT_EQ(asked(), "rename name4  new /name ;");
  EXPECT_EQ(panel_.focusWidget(), &rows_);

  choose(0, "重命名");
  sheet()->findChild<QLineEdit*>()->clear();
  answer(Qt::Key_Escape);
  EXPECT_EQ(sheet(), nullptr);
  EXPECT_EQ(asked(), "");
}

TEST_F(ResultListQuestionsTest, KeepsTheBytesOfANameThatIsLeftAlone) {
  std::string confirmed;
  const auto open = [&](const std::string& name, bool selectsStem = true) {
    auto* asking = new RenameSheetView(
        name, selectsStem, [&confirmed](const std::string& entered) { confirmed = entered; },
        panel_);
    asking->open();
    return asking->findChild<QLineEdit*>();
  };
  for (const std::string name :
       {"a.txt", "\xFF\xFE.txt", "\xEF\xBB\xBFmarked", "line\nbreak", ""}) {
    open(name);
    answer(Qt::Key_Return);
    EXPECT_EQ(confirmed, name);
  }
  const std::vector<std::pair<std::string, QString>> selections{
      {"报告.final.docx", QStringLiteral(u"报告.final")},
      {".bashrc", QStringLiteral(".bashrc")},
      {"README", QStringLiteral("README")}};
  for (const auto& [name, selected] : selections) {
    EXPECT_EQ(open(name)->selectedText(), selected);
    answer(Qt::Key_Escape);
  }
  EXPECT_EQ(open("v1.2", /*selectsStem=*/false)->selectedText(), QStringLiteral("v1.2"));
}

}  // namespace
}  // namespace zelnor::ui
