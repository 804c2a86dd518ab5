#include "bench/IndexPages.h"

#include <utility>
#include <vector>

#include <QApplication>
#include <QDateTime>
#include <QFileDialog>
#include <QPushButton>
#include <QScrollBar>

#include "indexer/IndexServices.h"
#include "indexer/IndexViewModel.h"
#include "store/DatabaseError.h"
#include "tests/support/FakeIndexMaintainer.h"
#include "tests/support/MainThread.h"
#include "tests/support/MemoryDefaultsStore.h"
#include "ui/settings/IndexSettingsView.h"

namespace zelnor::bench {
namespace {

using PathList = IndexViewModel::PathList;

constexpr QSize kPage(560, 397);  // what the window leaves for it
constexpr QSize kWholePage(560, 940);

IndexStatus usualStatus() {
  IndexStatus status;
  status.totalFiles = 1'110'242;
  const QDateTime date(QDate(2026, 11, 23), QTime(16, 9));
  status.lastIndexDate =
      std::chrono::system_clock::time_point(std::chrono::milliseconds(date.toMSecsSinceEpoch()));
  status.followed = platform::FollowCount{.live = 98'765, .swept = 12};
  return status;
}

/// A page on an indexer that does nothing.
class IndexPage {
 public:
  IndexPage() {
    page_.resize(kPage);
    page_.setStatus(usualStatus());
    page_.show();
  }
  ~IndexPage() { main_.runReady(); }
  IndexPage(const IndexPage&) = delete;
  IndexPage& operator=(const IndexPage&) = delete;

  ui::IndexSettingsView& page() { return page_; }
  IndexViewModel& index() { return index_; }

  void startRebuild(std::int64_t processed, std::int64_t total) {
    index_.startRebuild();
    main_.runReady();
    auto status = usualStatus();
    status.state = IndexStatus::State::indexing();
    status.processedFiles = processed;
    status.totalFiles = total;
    page_.setStatus(status);
  }
  void failRebuild() {
    index_.startRebuild();
    main_.runReady();
    maintainer_.fail(
        DatabaseError::execFailed("INSERT INTO files", "database or disk is full", /*code=*/13));
    main_.runReady();
  }

 private:
  test::MemoryDefaultsStore defaults_;
  test::FakeIndexMaintainer maintainer_;
  test::MainThread main_;
  IndexViewModel index_{IndexServices{.maintainer = maintainer_,
                                      .defaults = defaults_,
                                      .homeFolder = "/home/user",
                                      .main = main_.executor(),
                                      .background = main_.executor()}};
  ui::IndexSettingsView page_{index_};
};

using IndexScene = std::pair<std::string, std::function<void(IndexPage&)>>;

std::vector<IndexScene> indexScenes() {
  return {
      {"usual", [](IndexPage&) {}},
      {"first-run", [](IndexPage& stage) { stage.page().setStatus({}); }},
      {"rebuilding",
       [](IndexPage& stage) { stage.startRebuild(/*processed=*/687'000, /*total=*/1'110'242); }},
      {"rebuilding-whole",
       [](IndexPage& stage) {
         stage.page().resize(kWholePage);
         stage.startRebuild(/*processed=*/1'000, /*total=*/0);
       }},
      {"edited-whole",
       [](IndexPage& stage) {
         stage.page().resize(kWholePage);
         stage.index().addPath(PathList::included, "/media/user/Photos & <b>视频</b>");
         stage.index().addPath(PathList::included,
                               "/home/user/一个名字很长的文件夹/它的名字在这里放不下/所以要在中间"
                               "省略才能看到末尾/2026");
         stage.index().removePath(PathList::excluded, "/System");
       }},
      {"failed-whole",
       [](IndexPage& stage) {
         stage.page().resize(kWholePage);
         stage.failRebuild();
       }},
      {"end",
       [](IndexPage& stage) {
         stage.index().addPath(PathList::included, "/media/user/Photos");
         QApplication::processEvents();
         stage.page().verticalScrollBar()->setValue(stage.page().verticalScrollBar()->maximum());
       }},
  };
}

void shootPicker(const std::function<void(QWidget&, const std::string&)>& shoot) {
  IndexPage stage;
  for (auto* button : stage.page().findChildren<QPushButton*>()) {
    if (button->accessibleName() == QStringLiteral(u"添加要索引的文件夹")) button->click();
  }
  auto* picker = stage.page().findChild<QFileDialog*>();
  shoot(*picker, "index-page-picker");
}

}  // namespace

void forEachIndexPage(const std::function<void(QWidget&, const std::string&)>& shoot) {
  for (const auto& [name, prepare] : indexScenes()) {
    IndexPage stage;
    prepare(stage);
    shoot(stage.page(), "index-page-" + name);
  }
  shootPicker(shoot);
}

}  // namespace zelnor::bench
