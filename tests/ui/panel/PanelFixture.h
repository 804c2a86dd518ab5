#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QAbstractButton>
#include <QLineEdit>
#include <QTest>

#include "bookmarks/BookmarkPersistenceService.h"
#include "bookmarks/BookmarkServices.h"
#include "bookmarks/BookmarkViewModel.h"
#include "platform/ActivationSource.h"
#include "platform/Clipboard.h"
#include "platform/FileActions.h"
#include "platform/FileOpener.h"
#include "results/FileOperationService.h"
#include "results/FileOperationServices.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/ui/SearchFixture.h"
#include "ui/Style.h"
#include "ui/panel/SearchView.h"

namespace zelnor::ui {

/// A desktop that takes down what it is asked for.
class RecordingDesktop final : public platform::FileActions,
                               public platform::FileOpener,
                               public platform::ActivationSource,
                               public platform::Clipboard {
 public:
  std::vector<std::string> log;
  std::function<void()> meanwhile = [] {};  ///< what happens while it does that
  std::string refusal;  ///< what it says to trashing and renaming; empty: it does it

  void trash(const std::string& path) override { act("trash " + path); }
  void rename(const std::string& from, const std::string& to) override {
    act("rename " + from + " " + to);
  }
  void open(const std::string& path, const platform::Activation& /*activation*/) override {
    log.push_back("open " + path);
  }
  void reveal(const std::string& path, const platform::Activation& /*activation*/) override {
    log.push_back("reveal " + path);
  }
  void request(Ready ready) override { ready({}); }
  void copyFiles(const std::vector<std::string>& paths) override {
    for (const auto& path : paths) log.push_back("copy file " + path);
  }
  void copyText(const std::string& bytes) override { log.push_back("copy " + bytes); }

 private:
  void act(const std::string& what) {
    log.push_back(what);
    meanwhile();
    if (!refusal.empty()) throw platform::FileError(refusal);
  }
};

/// A whole panel on fakes, on the test's own thread and time, and without motion.
class PanelFixture : public SearchFixture {
 protected:
  PanelFixture() {
    applyStyle(*qApp, Style::Motion::still);
    main_.runUntil([this] { return !bookmarks_.categories().empty(); });
    view_ = std::make_unique<SearchView>(SearchPanelServices{model_, bookmarks_, files_, desktop_});
    view_->show();
    view_->activateWindow();
    settle();
    field_ = view_->findChild<QLineEdit*>();
  }
  ~PanelFixture() override {
    view_.reset();
    bool isStopped = false;
    files_.stop([&] { bookmarks_.stop([&] { isStopped = true; }); });
    main_.runUntil([&] { return isStopped; });
  }

  void type(const QString& text) {
    QTest::keyClicks(field_, text);
    waitForSearch();
  }
  static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  template <class Widget>
  Widget* find() const {
    return view_->findChild<Widget*>();
  }
  /// The button, chip or row with this title.
  [[nodiscard]] QAbstractButton* button(QStringView title) const {
    for (auto* candidate : view_->findChildren<QAbstractButton*>()) {
      if (candidate->accessibleName() == title && candidate->isVisible()) return candidate;
    }
    return nullptr;
  }
  void click(QStringView title) const {
    auto* found = button(title);
    ASSERT_NE(found, nullptr) << title.toString().toStdString();
    found->click();
  }

  test::TemporaryFolder folder_;
  RecordingDesktop desktop_;
  BookmarkPersistenceService bookmarkFiles_{folder_.path(), main_.executor()};
  BookmarkViewModel bookmarks_{BookmarkServices{bookmarkFiles_, main_.executor()}};
  FileOperationService files_{FileOperationServices{desktop_, desktop_, desktop_, clock_,
                                                    main_.executor(), main_.executor()}};
  std::unique_ptr<SearchView> view_;
  QLineEdit* field_ = nullptr;
};

}  // namespace zelnor::ui
