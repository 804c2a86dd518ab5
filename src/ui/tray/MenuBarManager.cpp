#include "ui/tray/MenuBarManager.h"

#include <string>
#include <utility>

#include <QAction>
#include <QGuiApplication>
#include <QKeySequence>

#include "platform/ActivationSource.h"
#include "platform/TrayItem.h"
#include "ui/Menu.h"
#include "ui/tray/TrayPictures.h"
#include "ui/tray/XEmbedTrayIcon.h"

namespace zelnor::ui {

namespace {

constexpr QLatin1String kItemSymbol("magnifyingglass");

QString toolTip() { return QStringLiteral(u"Zelnor - 快速文件搜索"); }

std::vector<std::string> shortcutNames(const QString& key) {
  if (key.isEmpty()) return {};
  return {"Control", key.toStdString()};
}

/// Elsewhere a program without a window that has the focus must not place a menu.
bool isOnX11() { return QGuiApplication::platformName() == QStringLiteral("xcb"); }

}  // namespace

MenuBarManager::MenuBarManager(platform::TrayItem& item, platform::ActivationSource& activations)
    : item_(item), activations_(activations), menu_(std::make_unique<Menu>(nullptr)) {}

MenuBarManager::~MenuBarManager() = default;

void MenuBarManager::setup(Show onShowSearch, Show onShowSettings, std::function<void()> onQuit) {
  const Entry separator{};
  const auto quit = [onQuit = std::move(onQuit)](const platform::Activation&) { onQuit(); };
  entries_ = {{kItemSymbol, QStringLiteral(u"搜索文件..."), {}, std::move(onShowSearch)},
              separator,
              {QLatin1String("gear"), QStringLiteral(u"偏好设置..."), QStringLiteral(","),
               std::move(onShowSettings)},
              separator,
              {{}, QStringLiteral(u"退出 Zelnor"), QStringLiteral("Q"), quit}};
  buildMenu();

  platform::TrayItem::Description description{.id = "zelnor",
                                              .title = "Zelnor",
                                              .toolTip = toolTip().toStdString(),
                                              .iconName = "org.zelnor.Zelnor-symbolic",
                                              .pictures = trayPictures(kItemSymbol),
                                              .menu = {}};
  for (const auto& entry : entries_) {
    description.menu.push_back(
        {.title = entry.title.toStdString(),
         .png = entry.symbol.isEmpty() ? std::string() : menuPicture(entry.symbol),
         .shortcut = shortcutNames(entry.key)});
  }
  item_.show(std::move(description),
             {.chosen = [this](std::size_t entry,
                               platform::Activation a) { entries_[entry].chosen(std::move(a)); },
              .menuRequested = [this](int x, int y) { return popUp(x, y); },
              .shownChanged = [this](bool isShown) { setShownByBar(isShown); }});
}

void MenuBarManager::buildMenu() {
  for (const auto& entry : entries_) {
    if (entry.title.isEmpty()) {
      menu_->addSeparator();
      continue;
    }
    auto* const action = menu_->add(entry.symbol, entry.title, [this, &entry] { choose(entry); });
    if (!entry.key.isEmpty())
      action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") + entry.key));
  }
}

void MenuBarManager::choose(const Entry& entry) {
  activations_.request(
      [chosen = entry.chosen](platform::Activation activation) { chosen(std::move(activation)); });
}

bool MenuBarManager::popUp(int x, int y) {
  if (!isOnX11()) return false;
  menu_->popup(QPoint(x, y));
  return true;
}

void MenuBarManager::setShownByBar(bool isShown) {
  if (isShown) {
    older_.reset();
  } else if (!older_ && isOnX11()) {
    // Qt asks for a bar of the newer kind once more, and waits; there is none to wait for.
    older_ = std::make_unique<XEmbedTrayIcon>(kItemSymbol, toolTip(), *menu_);
  }
}

}  // namespace zelnor::ui
