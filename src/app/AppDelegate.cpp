#include "app/AppDelegate.h"

#include <QWidget>

#include "app/AppEnvironment.h"
#include "app/SearchWindowController.h"
#include "ui/panel/SearchView.h"

namespace zelnor::app {

AppDelegate::AppDelegate(AppEnvironment& environment) : environment_(environment) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
  auto& desktop = environment_.desktop();
  searchWindowController_ = std::make_unique<SearchWindowController>(
      ui::SearchPanelServices{environment_.searchViewModel(), environment_.bookmarkViewModel(),
                              desktop.files(), desktop.clipboard(), &desktop.icons()},
      environment_.preferences());
  connectPanel();
  environment_.startIndexing();
}

void AppDelegate::connectPanel() {
  auto* view = &searchWindowController_->view();
  const auto showIndexing = [view](const IndexStatus& status) {
    view->setIndexing(status.state.kind == IndexStatus::State::Kind::indexing,
                      status.processedFiles, status.totalFiles);
  };
  connect(&environment_, &AppEnvironment::indexStatusChanged, view, showIndexing);
  connect(&environment_, &AppEnvironment::noticeChanged, view, &ui::SearchView::setNotice);
  connect(&environment_, &AppEnvironment::failed, view, &ui::SearchView::setFailure);
  connect(&environment_.preferences(), &Preferences::notStored, view,
          [view] { view->setNotice(QStringLiteral(u"设置无法保存，退出后将丢失")); });
}

void AppDelegate::applicationWillTerminate() { searchWindowController_->close(); }

void AppDelegate::showSearch(const platform::Activation& activation) {
  searchWindowController_->showWindow(activation);
}

void AppDelegate::showSettingsWindow(const platform::Activation& /*activation*/) {}

void AppDelegate::reregisterHotkey(const platform::HotkeyConfiguration& /*config*/) {}

}  // namespace zelnor::app
