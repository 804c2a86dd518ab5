#include "app/SearchWindowController.h"

#include <vector>

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include "app/PanelFrame.h"
#include "shell/Preferences.h"
#include "ui/panel/SearchView.h"
#include "ui/window/KeyablePanel.h"

namespace zelnor::app {

namespace {

/// The one that is the user's main one first.
std::vector<ScreenArea> screenAreas() {
  std::vector<ScreenArea> areas;
  for (const auto* screen : QGuiApplication::screens()) {
    areas.push_back({.whole = screen->geometry(), .available = screen->availableGeometry()});
  }
  return areas;
}

}  // namespace

SearchWindowController::SearchWindowController(const ui::SearchPanelServices& services,
                                               Preferences& preferences,
                                               platform::DesktopWindows& windows)
    : preferences_(preferences), windows_(windows), view_(new ui::SearchView(services)) {
  panel_ = std::make_unique<ui::KeyablePanel>(view_);
  panel_->setComposited(windows_.isComposited());
  placePanel();
  panel_->winId();  // made now, so that it need not be made while the user waits
  connect(view_, &ui::SearchView::closeRequested, this, &SearchWindowController::close);
  // Out of the task bar, there is nowhere to bring a minimized window back from, and some window
  // managers refuse to minimize it: hidden, it comes back by the hot key.
  connect(view_, &ui::SearchView::minimizeRequested, this, &SearchWindowController::close);
  connect(panel_.get(), &ui::KeyablePanel::closeRequested, this, &SearchWindowController::close);
  connect(panel_.get(), &ui::KeyablePanel::keyResigned, this, &SearchWindowController::resignedKey);
  connect(panel_.get(), &ui::KeyablePanel::shadowChanged, this,
          &SearchWindowController::describeShadow);
  connect(&windows_, &platform::DesktopWindows::compositedChanged, panel_.get(),
          &ui::KeyablePanel::setComposited);
  connect(qGuiApp, &QGuiApplication::screenRemoved, this, &SearchWindowController::keepOnScreen,
          Qt::QueuedConnection);
}

SearchWindowController::~SearchWindowController() = default;

/// A stored frame that cannot be read leaves the panel where a window begins.
void SearchWindowController::placePanel() {
  const auto screens = screenAreas();
  const auto& stored = preferences_.searchWindowFrame();
  if (!stored) {
    panel_->setFrame(firstFrame(ui::SearchView::kSize, QCursor::pos(), screens));
    return;
  }
  auto frame = frameFrom(*stored).value_or(QRect(QPoint(), ui::SearchView::kSize));
  frame.setSize(frame.size().expandedTo(ui::SearchView::kSmallest));
  panel_->setFrame(movedOntoScreen(frame, screens));
}

void SearchWindowController::keepOnScreen() {
  panel_->setFrame(movedOntoScreen(panel_->frame(), screenAreas()));
}

bool SearchWindowController::isShown() const {
  return panel_->isVisible() && !panel_->isMinimized();
}

void SearchWindowController::showWindow(const platform::Activation& activation) {
  if (!isShown()) {
    view_->focusSearchField();
    keepOnScreen();
  }
  if (!panel_->isVisible()) windows_.keepOutOfTaskBar(*panel_->windowHandle());
  panel_->setWindowState(panel_->windowState() & ~Qt::WindowMinimized);
  panel_->show();
  windows_.activate(*panel_->windowHandle(), activation);
}

void SearchWindowController::close() {
  if (!panel_->isMinimized()) preferences_.setSearchWindowFrame(frameText(panel_->frame()));
  panel_->hide();
  windows_.hidden(*panel_->windowHandle());
  if (onClose_) onClose_();
}

void SearchWindowController::resignedKey() {
  if (preferences_.autoCloseOnFocusLoss()) close();
}

void SearchWindowController::describeShadow() {
  windows_.setShadow(*panel_->windowHandle(), panel_->margin(), ui::KeyablePanel::kGrip);
}

}  // namespace zelnor::app
