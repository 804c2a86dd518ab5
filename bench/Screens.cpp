#include "bench/Screens.h"

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QTimer>

#include "bench/FixedData.h"
#include "bench/IndexPages.h"
#include "bookmarks/BookmarkPersistenceService.h"
#include "bookmarks/BookmarkServices.h"
#include "bookmarks/BookmarkViewModel.h"
#include "platform/FileDefaultsStore.h"
#include "platform/desktop/QtMainExecutor.h"
#include "results/FileOperationService.h"
#include "results/FileOperationServices.h"
#include "search/SearchServices.h"
#include "search/SearchViewModel.h"
#include "tasks/Clock.h"
#include "tasks/ThreadPool.h"
#include "tests/support/TemporaryFolder.h"
#include "ui/PlainButton.h"
#include "ui/bookmarks/BookmarksSidebarView.h"
#include "ui/bookmarks/RenameCategorySheet.h"
#include "ui/list/RenameSheetView.h"
#include "ui/list/ResultRows.h"
#include "ui/panel/ProgressSheet.h"
#include "ui/panel/SearchView.h"

namespace zelnor::bench {
namespace {

constexpr std::chrono::seconds kDrawPatience{20};
constexpr QSize kLargest(1920, 1080);  // 3840 × 2160 at scale 2

void waitFor(const std::function<bool()>& condition) {
  QElapsedTimer watch;
  watch.start();
  while (!condition()) {
    QApplication::processEvents(QEventLoop::AllEvents, /*ms=*/10);
    if (watch.hasExpired(std::chrono::milliseconds(kDrawPatience).count()))
      throw std::runtime_error("the panel does not answer");
  }
}

void handleEvents() {
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
}

/// A panel with everything it needs, on fixed data.
class Stage {
 public:
  Stage() {
    waitFor([this] { return !bookmarks_.categories().empty(); });
    panel_ = std::make_unique<ui::SearchView>(
        ui::SearchPanelServices{search_, bookmarks_, files_, desktop_});
    panel_->show();
    handleEvents();
  }
  ~Stage() {
    bool isStopped = false;
    panel_.reset();
    source_.goOn();
    files_.stop([&] { search_.stop([&] { bookmarks_.stop([&] { isStopped = true; }); }); });
    waitFor([&] { return isStopped; });
  }
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  ui::SearchView& panel() { return *panel_; }
  SearchViewModel& searching() { return search_; }
  BookmarkViewModel& bookmarks() { return bookmarks_; }
  FileOperationService& files() { return files_; }
  ui::ResultRows& rows() { return *panel_->findChild<ui::ResultRows*>(); }
  ui::BookmarksSidebarView& sidebar() { return *panel_->findChild<ui::BookmarksSidebarView*>(); }

  void search(const std::string& text) {
    search_.setQueryText(text);
    search_.performSearch();
    waitFor([this] { return !search_.isSearching(); });
    handleEvents();
  }
  void fillBookmarks() {
    bookmarks_.addCategory("工作");
    const auto work = bookmarks_.categories().back().id;
    SearchFilter huge;
    huge.sizePreset = SizePreset::enormous;
    SearchFilter images;
    images.category = FileTypeCategory::image;
    images.datePreset = DatePreset::week;
    SearchFilter documents;
    documents.category = FileTypeCategory::document;
    bookmarks_.addBookmark("大文件", "", huge, {});
    bookmarks_.addBookmark("本周的图片", "", images, {});
    bookmarks_.addBookmark("季度报告", "季度报告", documents, work);
    bookmarks_.addBookmark("设计稿 & <b>草图</b>", "*.psd", {}, work);
    bookmarks_.addBookmark("一个名字很长的书签，看它在侧栏里怎样省略", "r:^IMG_\\d+", {}, work);
    handleEvents();
  }

 private:
  const test::TemporaryFolder folder_;
  platform::QtMainExecutor main_;
  tasks::ThreadPool pool_{2};
  tasks::SteadyClock clock_{pool_.executor()};
  platform::FileDefaultsStore defaults_{folder_ / "settings"};
  FixedSource source_;
  RefusingDesktop desktop_;
  SearchViewModel search_{
      SearchServices{source_, clock_, defaults_, main_.executor(), pool_.executor()}};
  BookmarkPersistenceService bookmarkFiles_{folder_.path(), pool_.executor()};
  BookmarkViewModel bookmarks_{BookmarkServices{bookmarkFiles_, main_.executor()}};
  FileOperationService files_{FileOperationServices{desktop_, desktop_, desktop_, clock_,
                                                    main_.executor(), pool_.executor()}};
  std::unique_ptr<ui::SearchView> panel_;
};

/// Takes pictures of a panel, with its menu if one is open.
class Camera {
 public:
  explicit Camera(std::string folder) : folder_(std::move(folder)) {}

  void shoot(QWidget& panel, const std::string& name) {
    handleEvents();
    for (const int scale : {1, 2}) {
      QPixmap picture(panel.size() * scale);
      picture.setDevicePixelRatio(scale);
      panel.render(&picture);
      if (auto* menu = QApplication::activePopupWidget()) {
        QPixmap itsPicture(menu->size() * scale);
        itsPicture.setDevicePixelRatio(scale);
        menu->render(&itsPicture);
        QPainter(&picture).drawPixmap(menu->pos() - panel.mapToGlobal(QPoint()), itsPicture);
      }
      save(picture, name + (scale == 1 ? ".png" : "@2x.png"));
    }
    if (auto* menu = QApplication::activePopupWidget()) menu->close();
    handleEvents();
  }
  [[nodiscard]] const std::string& names() const { return names_; }

 private:
  void save(const QPixmap& picture, const std::string& name) {
    const auto path = folder_ + "/" + name;
    if (!picture.save(QString::fromStdString(path)))
      throw std::runtime_error("cannot write " + path);
    names_ += name + "\n";
  }

  std::string folder_;
  std::string names_;
};

using Scene = std::pair<std::string, std::function<void(Stage&)>>;

void hover(QWidget& widget, const QPoint& at) {
  QMouseEvent event(QEvent::MouseMove, at, widget.mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                    Qt::NoModifier);
  QApplication::sendEvent(&widget, &event);
  handleEvents();
}

void press(QWidget& widget, Qt::Key key) {
  QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
  QApplication::sendEvent(&widget, &event);
  handleEvents();
}

void select(Stage& stage, const SearchViewModel::IdSet& ids) {
  stage.search("报告");
  stage.searching().setSelectedIDs(ids);
  handleEvents();
}

void openContextMenu(Stage& stage) {
  select(stage, {1});
  auto& rows = stage.rows();
  const auto at = rows.visualRect(rows.model()->index(0, 0)).center();
  QContextMenuEvent event(QContextMenuEvent::Mouse, at, rows.viewport()->mapToGlobal(at));
  QApplication::sendEvent(rows.viewport(), &event);
}

void openSortMenu(Stage& stage) {
  stage.search("报告");
  for (auto* button : stage.panel().findChildren<ui::PlainButton*>()) {
    if (button->title().startsWith(QStringLiteral(u"排序"))) button->click();
  }
}

void openRenameSheet(Stage& stage) {
  select(stage, {1});
  const auto& name = stage.searching().results().front().record.name;
  (new ui::RenameSheetView(
       name, /*selectsStem=*/true, [](const std::string&) {}, stage.panel()))
      ->open();
}

void trash(Stage& stage, const SearchViewModel::IdSet& ids) {
  select(stage, ids);
  press(stage.rows(), Qt::Key_Backspace);
}

void failToTrash(Stage& stage) {
  stage.search("报告");
  const auto& rows = stage.searching().results();
  stage.files().moveToTrash({rows[0], rows[1]});
  waitFor([&] {
    return QApplication::focusWidget() != nullptr &&
           QApplication::focusWidget()->window()->findChild<ui::Sheet*>() != nullptr;
  });
}

std::vector<Scene> scenes() {
  return {
      {"empty", [](Stage&) {}},
      {"recents-and-bookmarks",
       [](Stage& stage) {
         stage.fillBookmarks();
         for (const auto* text : {"合同 2026", "r:^IMG_\\d+", "*.psd", "季度报告"})
           stage.search(text);
         stage.searching().setQueryText("");
       }},
      {"results", [](Stage& stage) { stage.search("季度报告"); }},
      {"sorted",
       [](Stage& stage) {
         stage.search("季度报告");
         stage.searching().updateSort(SortField::name);
         waitFor([&] { return !stage.searching().isSearching(); });
         stage.searching().setSelectedIDs({1});
       }},
      {"hover",
       [](Stage& stage) {
         select(stage, {1});
         auto& rows = stage.rows();
         hover(*rows.viewport(), rows.visualRect(rows.model()->index(2, 0)).center());
       }},
      {"selection", [](Stage& stage) { select(stage, {1, 2, 4, 5}); }},
      {"odd-names",
       [](Stage& stage) {
         stage.search("报告");
         stage.rows().scrollTo(stage.rows().model()->index(9, 0), QAbstractItemView::PositionAtTop);
       }},
      {"loading-more",
       [](Stage& stage) {
         stage.search("更多");
         stage.rows().scrollToBottom();
       }},
      {"no-results", [](Stage& stage) { stage.search("无「此」物"); }},
      {"error", [](Stage& stage) { stage.search("错误"); }},
      {"searching",
       [](Stage& stage) {
         stage.searching().setQueryText("等待");
         stage.searching().performSearch();
         bool isOver = false;
         QTimer::singleShot(300, [&] { isOver = true; });
         waitFor([&] { return isOver; });
       }},
      {"indexing", [](Stage& stage) { stage.panel().setIndexing(true, 12345, 0); }},
      {"indexed", [](Stage& stage) { stage.panel().setIndexing(false, 0, 1'110'242); }},
      {"filters",
       [](Stage& stage) {
         stage.search("季度报告");
         stage.panel().setShowsFilters(true);
       }},
      {"filters-active",
       [](Stage& stage) {
         SearchFilter filter;
         filter.category = FileTypeCategory::document;
         filter.sizePreset = SizePreset::medium;
         filter.datePreset = DatePreset::month;
         stage.searching().setFilter(filter);
         stage.search("*季度*");
         stage.panel().setShowsFilters(true);
       }},
      {"filters-smallest",
       [](Stage& stage) {
         SearchFilter filter;
         filter.datePreset = DatePreset::year;
         stage.searching().setFilter(filter);
         stage.search("r:季度");
         stage.panel().resize(ui::SearchView::kSmallest);
         stage.panel().setShowsFilters(true);
       }},
      {"sidebar",
       [](Stage& stage) {
         stage.fillBookmarks();
         stage.search("季度报告");
         stage.panel().setShowsBookmarks(true);
       }},
      {"sidebar-and-filters",
       [](Stage& stage) {
         stage.fillBookmarks();
         stage.search("季度报告");
         stage.panel().setShowsFilters(true);
         stage.panel().setShowsBookmarks(true);
       }},
      {"sidebar-and-filters-smallest",
       [](Stage& stage) {
         stage.fillBookmarks();
         stage.search("季度报告");
         stage.panel().resize(ui::SearchView::kSmallest);
         stage.panel().setShowsFilters(true);
         stage.panel().setShowsBookmarks(true);
       }},
      {"sidebar-first-run", [](Stage& stage) { stage.panel().setShowsBookmarks(true); }},
      {"add-bookmark",
       [](Stage& stage) {
         stage.fillBookmarks();
         stage.search("季度报告");
         stage.panel().setShowsBookmarks(true);
         stage.bookmarks().prepareNew(stage.searching());
         stage.sidebar().openAddSheet();
       }},
      {"rename-category",
       [](Stage& stage) {
         stage.panel().setShowsBookmarks(true);
         (new ui::RenameCategorySheet("工作", [](const std::string&) {}, stage.panel()))->open();
       }},
      {"context-menu", openContextMenu},
      {"sort-menu", openSortMenu},
      {"rename-file", openRenameSheet},
      {"trash-one", [](Stage& stage) { trash(stage, {1}); }},
      {"trash-several", [](Stage& stage) { trash(stage, {1, 2, 3}); }},
      {"trash-odd-name", [](Stage& stage) { trash(stage, {13}); }},
      {"trash-failed", failToTrash},
      {"trash-progress",
       [](Stage& stage) {
         stage.search("报告");
         auto* sheet = new ui::ProgressSheet(QStringLiteral(u"正在移到废纸篓..."), stage.panel());
         sheet->setProgress(321, 1'000);
         sheet->open();
       }},
      {"permission-guide", [](Stage& stage) { stage.panel().showPermissionGuide({}); }},
      {"permission-guide-smallest",
       [](Stage& stage) {
         stage.panel().resize(ui::SearchView::kSmallest);
         stage.panel().showPermissionGuide({});
       }},
      {"smallest",
       [](Stage& stage) {
         stage.fillBookmarks();
         select(stage, {2});
         stage.panel().resize(ui::SearchView::kSmallest);
         stage.panel().setShowsBookmarks(true);
       }},
      {"largest",
       [](Stage& stage) {
         stage.panel().resize(kLargest);
         stage.search("季度报告");
       }},
  };
}

}  // namespace

std::string drawScreens(const std::string& folder) {
  Camera camera(folder);
  for (const auto& [name, prepare] : scenes()) {
    Stage stage;
    prepare(stage);
    camera.shoot(stage.panel(), name);
  }
  forEachIndexPage([&](QWidget& page, const std::string& name) { camera.shoot(page, name); });
  constexpr double kUsualPoints = 11;
  constexpr double kLarger = 1.2;
  QFont font = QApplication::font();
  font.setPointSizeF(kUsualPoints * kLarger);
  QApplication::setFont(font);
  for (const auto& [name, prepare] : scenes()) {
    Stage stage;
    prepare(stage);
    camera.shoot(stage.panel(), "large-font-" + name);
  }
  forEachIndexPage(
      [&](QWidget& page, const std::string& name) { camera.shoot(page, "large-font-" + name); });
  return camera.names();
}

}  // namespace zelnor::bench
