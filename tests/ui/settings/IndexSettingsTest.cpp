#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include "indexer/IndexServices.h"
#include "indexer/IndexViewModel.h"
#include "tests/support/FakeIndexMaintainer.h"
#include "tests/support/MainThread.h"
#include "tests/support/MemoryDefaultsStore.h"
#include "tests/support/TemporaryFolder.h"
#include "ui/ProgressLine.h"
#include "ui/Style.h"
#include "ui/form/FormButton.h"
#include "ui/form/Switch.h"
#include "ui/settings/IndexSettingsView.h"

namespace zelnor::ui {
namespace {

using testing::ElementsAre;
using PathList = IndexViewModel::PathList;

class IndexSettingsTest : public testing::Test {
 protected:
  IndexSettingsTest() {
    applyStyle(*qApp, Style::Motion::still);
    page_->resize(560, 400);
    page_->show();
    settle();
  }
  ~IndexSettingsTest() override {
    maintainer_.finish();
    main_.runReady();
  }

  void settle() {
    main_.runReady();
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  /// The buttons with this title that are there, from the top.
  [[nodiscard]] std::vector<QPushButton*> buttons(QStringView title) const {
    std::vector<QPushButton*> found;
    for (auto* button : page_->findChildren<QPushButton*>()) {
      if (button->accessibleName() == title && button->isVisible()) found.push_back(button);
    }
    return found;
  }
  void click(QStringView title) {
    const auto found = buttons(title);
    ASSERT_FALSE(found.empty()) << title.toString().toStdString();
    found.front()->click();
    settle();
  }
  /// How often this text is there to be read.
  [[nodiscard]] int shown(QStringView text) const {
    int count = 0;
    for (auto* label : page_->findChildren<QLabel*>()) {
      if (label->text() == text && label->isVisible()) ++count;
    }
    return count;
  }
  [[nodiscard]] std::vector<ProgressLine*> progressLines() const {
    std::vector<ProgressLine*> found;
    for (auto* line : page_->findChildren<ProgressLine*>()) {
      if (line->isVisible()) found.push_back(line);
    }
    return found;
  }
  [[nodiscard]] std::optional<IndexConfiguration> stored() const {
    return IndexConfiguration::saved(defaults_);
  }
  QFileDialog* picker() { return page_->findChild<QFileDialog*>(); }
  /// Picks `folder` as the user does who types it.
  void pick(QStringView button, const std::string& folder) {
    click(button);
    ASSERT_NE(picker(), nullptr);
    auto* name = picker()->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(name, nullptr);
    name->setText(QFile::decodeName(folder.c_str()));
    static_cast<QDialog*>(picker())->accept();
    settle();
  }

  static constexpr auto kAdd = u"添加要索引的文件夹";
  static constexpr auto kAddExcluded = u"添加要排除的文件夹";
  static constexpr auto kUnapplied = u"更改将在下次重建索引后生效";

  test::MemoryDefaultsStore defaults_;
  test::FakeIndexMaintainer maintainer_;
  test::MainThread main_;
  IndexViewModel index_{IndexServices{.maintainer = maintainer_,
                                      .defaults = defaults_,
                                      .homeFolder = "/home/me",
                                      .main = main_.executor(),
                                      .background = main_.executor()}};
  std::unique_ptr<IndexSettingsView> page_ = std::make_unique<IndexSettingsView>(index_);
};

TEST_F(IndexSettingsTest, EitherButtonRebuildsAndBothRestWhileThatRuns) {
  EXPECT_EQ(shown(u"状态：正常"), 1);
  EXPECT_TRUE(progressLines().empty());
  for (const auto* title : {u"立即重建索引", u"重建索引"}) {
    click(title);
    EXPECT_EQ(shown(u"状态：索引中"), 1);
    const auto busy = buttons(u"索引中...");
    ASSERT_EQ(busy.size(), 2U);
    for (auto* button : busy) {
      EXPECT_FALSE(button->isEnabled());
      button->click();
    }
    settle();
    EXPECT_EQ(progressLines().size(), 2U);
    maintainer_.finish();
    settle();
    EXPECT_TRUE(progressLines().empty());
  }
  EXPECT_EQ(maintainer_.rebuilds.size(), 2U);
}

TEST_F(IndexSettingsTest, TheLinesSayHowFarTheRebuildIs) {
  click(u"重建索引");
  IndexStatus status;
  const auto progress = [&] {
    page_->setStatus(status);
    std::vector<std::optional<double>> found;
    for (const auto* line : progressLines()) found.push_back(line->progress());
    return found;
  };
  EXPECT_THAT(progress(), ElementsAre(0.0, 0.0));
  status.processedFiles = 5'000;
  EXPECT_THAT(progress(), ElementsAre(std::nullopt, std::nullopt));
  page_->grab();  // what is drawn while nobody knows
  status.totalFiles = 20'000;
  EXPECT_THAT(progress(), ElementsAre(0.25, 0.25));
}

TEST_F(IndexSettingsTest, SaysWhatTheIndexHoldsAndHowItIsFollowedOnceKnown) {
  EXPECT_EQ(shown(u"尚未索引"), 1);
  const auto beginning = [this](QStringView text) {
    int count = 0;
    for (auto* label : page_->findChildren<QLabel*>()) {
      if (label->text().startsWith(text) && label->isVisible()) ++count;
    }
    return count;
  };
  EXPECT_EQ(beginning(u"上次索引："), 0);
  EXPECT_EQ(beginning(u"实时跟踪 "), 0);
  IndexStatus status;
  status.totalFiles = 42;
  status.lastIndexDate = std::chrono::system_clock::now();
  status.followed = platform::FollowCount{.live = 7, .swept = 3};
  page_->setStatus(status);
  EXPECT_EQ(shown(u"42 个"), 1);
  EXPECT_EQ(shown(u"已索引文件：42 个"), 1);
  EXPECT_EQ(shown(u"尚未索引"), 0);
  EXPECT_EQ(beginning(u"上次索引："), 1);
  EXPECT_EQ(shown(u"实时跟踪 7 个文件夹，定期检查 3 个文件夹"), 1);
}

TEST_F(IndexSettingsTest, AFailureIsToldInBothPlacesUntilTheNextRebuild) {
  const auto full = DatabaseError::execFailed("COMMIT", "disk <b>full</b>", /*code=*/13);
  click(u"重建索引");
  maintainer_.fail(full);
  settle();
  EXPECT_EQ(shown(QString::fromUtf8(full.what())), 2);
  click(u"重建索引");
  EXPECT_EQ(shown(QString::fromUtf8(full.what())), 0);
}

TEST_F(IndexSettingsTest, AFolderThatIsPickedIsStoredAndFollowedAtOnce) {
  const test::TemporaryFolder tree;
  const auto folder = tree.folder("照片");
  pick(kAdd, folder);
  pick(kAdd, folder);
  pick(kAddExcluded, folder);
  ASSERT_TRUE(stored());
  EXPECT_THAT(stored()->includedPaths, ElementsAre("/home/me", folder, folder));
  EXPECT_EQ(stored()->excludedPaths.back(), folder);
  ASSERT_EQ(maintainer_.followed.size(), 3U);
  EXPECT_EQ(maintainer_.followed.back(), index_.configuration());
  EXPECT_EQ(shown(QString::fromStdString(folder)), 3);
}

TEST_F(IndexSettingsTest, APickThatIsCancelledOrNoFolderChangesNothing) {
  const auto before = index_.configuration();
  click(kAdd);
  click(kAdd);
  ASSERT_EQ(page_->findChildren<QFileDialog*>().size(), 1);
  EXPECT_EQ(picker()->fileMode(), QFileDialog::Directory);
  picker()->reject();
  settle();
  EXPECT_EQ(picker(), nullptr);

  click(kAdd);
  Q_EMIT picker()->fileSelected(QStringLiteral(u"/tmp/\ufffd"));  // bytes that are not UTF-8
  settle();
  EXPECT_EQ(index_.configuration(), before);
  EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(IndexSettingsTest, RemovedFoldersAndSwitchesWaitForARebuildAndThePageSaysSo) {
  index_.addPath(PathList::included, "/a");
  index_.addPath(PathList::included, "/a");
  click(u"重建索引");
  maintainer_.finish();
  settle();
  const auto before = stored();
  EXPECT_EQ(shown(kUnapplied), 0);

  click(u"移除 /a");
  EXPECT_THAT(index_.configuration().includedPaths, ElementsAre("/home/me"));
  EXPECT_EQ(shown(u"/a"), 0);
  EXPECT_EQ(shown(kUnapplied), 1);
  click(u"移除 /System");
  const auto switches = page_->findChildren<Switch*>();
  ASSERT_EQ(switches.size(), 3);
  for (auto* option : switches) option->click();
  settle();
  const auto& edited = index_.configuration();
  EXPECT_TRUE(edited.skipHiddenFiles);
  EXPECT_FALSE(edited.skipPackageContents);
  EXPECT_TRUE(edited.skipSymlinks);
  EXPECT_EQ(stored(), before);
  EXPECT_EQ(maintainer_.followed.size(), 2U);  // of the additions

  click(u"重建索引");
  maintainer_.finish();
  settle();
  EXPECT_EQ(shown(kUnapplied), 0);
  EXPECT_EQ(stored(), edited);
}

TEST_F(IndexSettingsTest, SwitchesShowWhatTheConfigurationBecomesElsewhere) {
  auto edited = index_.configuration();
  edited.skipSymlinks = true;
  index_.setConfiguration(edited);
  std::vector<bool> states;
  for (const auto* option : page_->findChildren<Switch*>()) states.push_back(option->isChecked());
  EXPECT_THAT(states, ElementsAre(false, true, true));
}

TEST_F(IndexSettingsTest, WhoRemovesByKeyboardStaysInTheList) {
  for (const auto* path : {"/a", "/b"}) index_.addPath(PathList::included, path);
  page_->activateWindow();
  settle();
  buttons(u"移除 /home/me").front()->setFocus(Qt::TabFocusReason);
  for (int i = 0; i < 3; ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    settle();
  }
  EXPECT_TRUE(index_.configuration().includedPaths.empty());
  EXPECT_EQ(QApplication::focusWidget()->accessibleName(), kAdd);
}

TEST_F(IndexSettingsTest, APageTooLowForAllOfItScrollsInsteadOfSqueezingLines) {
  page_->resize(560, 200);
  settle();
  for (const auto* label : page_->findChildren<QLabel*>()) {
    if (label->isVisible()) {
      EXPECT_GE(label->height(), label->fontMetrics().height()) << label->text().toStdString();
    }
  }
}

TEST_F(IndexSettingsTest, NothingIsWiderThanThePage) {
  index_.addPath(PathList::included, "/" + std::string(400, 'w'));
  click(u"重建索引");
  maintainer_.fail(DatabaseError::execFailed("COMMIT", std::string(30, 'w') + " and more", 13));
  page_->resize(420, 400);
  settle();
  EXPECT_LE(page_->widget()->width(), 420);
  for (auto* button : page_->findChildren<QPushButton*>()) {
    const auto right = button->mapTo(page_->widget(), QPoint(button->width(), 0)).x();
    if (button->isVisible()) {
      EXPECT_LE(right, page_->viewport()->width());
    }
  }
}

}  // namespace
}  // namespace zelnor::ui
