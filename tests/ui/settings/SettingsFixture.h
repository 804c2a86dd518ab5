#pragma once

#include <cerrno>
#include <memory>
#include <system_error>

#include <QLabel>

#include "indexer/IndexServices.h"
#include "indexer/IndexViewModel.h"
#include "platform/LoginItem.h"
#include "shell/LaunchAtLoginService.h"
#include "shell/Preferences.h"
#include "tasks/Completion.h"
#include "tests/support/MemoryDefaultsStore.h"
#include "tests/ui/bookmarks/BookmarksFixture.h"
#include "ui/settings/SettingsTabs.h"
#include "ui/settings/SettingsView.h"

namespace zelnor::ui {

/// Rebuilds take until the test ends them.
class SlowMaintainer final : public IndexMaintainer {
 public:
  std::shared_ptr<tasks::Completion<bool>> running;

  tasks::Async<void> rebuildIndex(IndexConfiguration /*config*/) override {
    const auto end = running = std::make_shared<tasks::Completion<bool>>();
    co_await tasks::Completion<bool>::wait(end);
  }
  tasks::Async<void> startMonitoring(IndexConfiguration /*config*/) override { co_return; }
};

/// A desktop that may refuse to start the program.
class RefusingLoginItem final : public platform::LoginItem {
 public:
  bool refuses = false;

  [[nodiscard]] Status status() const override {
    return isOn_ ? Status::enabled : Status::notRegistered;
  }
  void registerItem() override {
    if (refuses) throw std::system_error(EACCES, std::generic_category());
    isOn_ = true;
  }
  void unregisterItem() override { isOn_ = false; }

 private:
  bool isOn_ = false;
};

/// The settings on fakes, on the test's own thread, and without motion.
class SettingsFixture : public BookmarksFixture {
 protected:
  SettingsFixture() {
    applyStyle(*qApp, Style::Motion::still);
    view_ =
        std::make_unique<SettingsView>(SettingsServices{.preferences = preferences_,
                                                        .launchService = launch_,
                                                        .bookmarks = bookmarks_,
                                                        .index = index_.get(),
                                                        .dataFolder = QStringLiteral("~/Zelnor/")});
    view_->show();
    view_->activateWindow();
    settle();
  }
  ~SettingsFixture() override {
    view_.reset();
    if (maintainer_.running) maintainer_.running->set(true);
    int stopped = 0;
    if (index_) index_->stop([&] { ++stopped; });
    launch_.stop([&] { ++stopped; });
    main_.runUntil([&] { return stopped == (index_ ? 2 : 1); });
  }

  void settle() {
    for (int i = 0; i < 3; ++i) {
      main_.runReady();
      QApplication::processEvents();
    }
  }
  void go(int page) {
    view_->tabs().setCurrentIndex(page);
    settle();
  }
  [[nodiscard]] QAbstractButton* button(QStringView title, int which = 0) const {
    for (auto* candidate : view_->findChildren<QAbstractButton*>()) {
      if (candidate->accessibleName() == title && candidate->isVisible() && which-- == 0) {
        return candidate;
      }
    }
    return nullptr;
  }
  void click(QStringView title) {
    auto* found = button(title);
    ASSERT_NE(found, nullptr) << title.toString().toStdString();
    found->click();
    settle();
  }
  [[nodiscard]] bool shows(QStringView text) const {
    for (const auto* label : view_->findChildren<QLabel*>()) {
      if (label->text() == text && label->isVisible()) return true;
    }
    return false;
  }

  test::MemoryDefaultsStore defaults_;
  SlowMaintainer maintainer_;
  RefusingLoginItem loginItem_;
  Preferences preferences_{defaults_, main_.executor(), main_.executor()};
  LaunchAtLoginService launch_{loginItem_, main_.executor(), main_.executor()};
  std::unique_ptr<IndexViewModel> index_ = std::make_unique<IndexViewModel>(
      IndexServices{maintainer_, defaults_, "/home/me", main_.executor(), main_.executor()});
  std::unique_ptr<SettingsView> view_;
};

}  // namespace zelnor::ui
