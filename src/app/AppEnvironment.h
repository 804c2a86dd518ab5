#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include <QObject>
#include <QString>

#include "app/DeferredSearchSource.h"
#include "app/DesktopServices.h"
#include "app/IndexAccess.h"
#include "app/Options.h"
#include "bookmarks/BookmarkPersistenceService.h"
#include "bookmarks/BookmarkViewModel.h"
#include "indexer/IndexStatus.h"
#include "indexer/IndexViewModel.h"
#include "platform/FileDefaultsStore.h"
#include "platform/desktop/QtMainExecutor.h"
#include "search/SearchViewModel.h"
#include "shell/Preferences.h"
#include "tasks/Clock.h"
#include "tasks/Completion.h"
#include "tasks/TaskGroup.h"
#include "tasks/ThreadPool.h"

namespace zelnor::app {

/// Owns what lives as long as the program: threads, settings, the index and the view models.
///
/// Main thread only.
class AppEnvironment final : public QObject {
  Q_OBJECT

 public:
  explicit AppEnvironment(Options options);
  /// After `shutDown()`.
  ~AppEnvironment() override;

  [[nodiscard]] SearchViewModel& searchViewModel() { return *searchViewModel_; }
  [[nodiscard]] IndexViewModel& indexViewModel() { return *indexViewModel_; }
  [[nodiscard]] BookmarkViewModel& bookmarkViewModel() { return *bookmarkViewModel_; }
  [[nodiscard]] Preferences& preferences() { return preferences_; }
  [[nodiscard]] DesktopServices& desktop() { return desktop_; }
  [[nodiscard]] const Options& options() const { return options_; }
  /// What runs by itself until the environment is shut down, on the main thread.
  [[nodiscard]] tasks::TaskGroup& tasks() { return tasks_; }
  [[nodiscard]] tasks::Executor main() const { return main_.executor(); }
  /// As last signalled.
  [[nodiscard]] const IndexStatus& indexStatus() const { return status_; }

  /// Opens the index, which is made if there is none, on another thread; events are handled
  /// meanwhile. Answers why it cannot be used, in words for the user; nothing if it is open, or if
  /// that takes longer than `patience`, so that whoever waits may go on without it.
  std::optional<std::string> open(std::chrono::milliseconds patience);
  /// After `open`: keeps the index current; fills it if it is empty or if other roots were asked
  /// for. As long as another process does that, the index can only be searched; when that one ends,
  /// this one takes its place.
  void startIndexing();

  /// Ends whatever runs and closes the index; events are handled meanwhile. It may be cut short by
  /// ending the process: what that breaks off in the index, its next opening puts right.
  void shutDown();

 Q_SIGNALS:
  void openingEnded();
  void indexStatusChanged(const zelnor::IndexStatus& status);
  /// Something about the index that the user should know; empty when it no longer holds.
  void noticeChanged(const QString& notice);
  /// The index cannot be used; the reason is for the user.
  void failed(const QString& reason);

 private:
  [[nodiscard]] FileIndexActor::Surroundings surroundings();
  tasks::Async<void> openIndex(std::stop_token stop);
  tasks::Async<void> run(std::stop_token stop);
  /// As long as another process maintains the index.
  tasks::Async<void> searchOnly(std::stop_token stop);
  tasks::Async<void> maintain(std::stop_token stop);
  tasks::Async<void> endEverything();
  void show(const IndexStatus& status);
  void report(const std::string& reason);

  const Options options_;
  // What runs tasks goes last, the main thread at the very end.
  platform::QtMainExecutor main_;
  tasks::ThreadPool interactive_;
  tasks::ThreadPool background_;
  platform::FileDefaultsStore defaults_;
  tasks::SteadyClock clock_;
  DeferredSearchSource source_;
  IndexAccess index_;
  /// Set when opening has ended, to whether the index is open.
  std::shared_ptr<tasks::Completion<bool>> opening_ = std::make_shared<tasks::Completion<bool>>();
  std::optional<std::string> openingFailure_;
  LiveIndexStatus::Observation observation_;
  IndexStatus status_;
  Preferences preferences_;
  std::unique_ptr<SearchViewModel> searchViewModel_;
  std::unique_ptr<IndexViewModel> indexViewModel_;
  BookmarkPersistenceService bookmarkFiles_;
  std::unique_ptr<BookmarkViewModel> bookmarkViewModel_;
  DesktopServices desktop_;
  tasks::TaskGroup tasks_;
};

}  // namespace zelnor::app
