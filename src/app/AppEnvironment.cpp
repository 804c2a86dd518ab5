#include "app/AppEnvironment.h"

#include <cstdio>
#include <exception>
#include <system_error>
#include <utility>

#include <QEventLoop>
#include <QTimer>

#include "bookmarks/BookmarkServices.h"
#include "indexer/IndexServices.h"
#include "platform/Priority.h"
#include "search/SearchServices.h"
#include "tasks/RunOn.h"

namespace zelnor::app {

namespace {

constexpr std::size_t kInteractiveThreads = 2;
constexpr std::size_t kBackgroundThreads = 3;

/// Tells it to stop; complete once it has ended.
template <class Stopping>
std::shared_ptr<tasks::Completion<bool>> ended(Stopping& what) {
  auto end = std::make_shared<tasks::Completion<bool>>();
  what.stop([end] { end->set(true); });
  return end;
}

void printLine(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

}  // namespace

AppEnvironment::AppEnvironment(Options options)
    : options_(std::move(options)),
      interactive_(kInteractiveThreads),
      background_(kBackgroundThreads, platform::enterBackgroundPriority),
      defaults_(options_.settingsFolder),
      clock_(interactive_.executor()),
      index_(surroundings(), interactive_.executor(), clock_),
      preferences_(defaults_, main_.executor(), interactive_.executor()),
      searchViewModel_(std::make_unique<SearchViewModel>(
          SearchServices{source_, clock_, defaults_, main_.executor(), interactive_.executor()})),
      indexViewModel_(std::make_unique<IndexViewModel>(IndexServices{
          index_, defaults_, options_.homeFolder, main_.executor(), interactive_.executor()})),
      bookmarkFiles_(options_.dataFolder, interactive_.executor()),
      bookmarkViewModel_(
          std::make_unique<BookmarkViewModel>(BookmarkServices{bookmarkFiles_, main_.executor()})),
      desktop_(main_.executor(), clock_),
      tasks_(main_.executor()) {}

AppEnvironment::~AppEnvironment() = default;

FileIndexActor::Surroundings AppEnvironment::surroundings() {
  platform::ChangeStreamOptions changes;
  changes.ownPaths = {options_.settingsFolder};
  return {.dataFolder = options_.dataFolder,
          .background = background_.executor(),
          .main = main_.executor(),
          .defaults = defaults_,
          .changes = changes,
          .log = printLine};
}

std::optional<std::string> AppEnvironment::open(std::chrono::milliseconds patience) {
  Q_EMIT noticeChanged(QStringLiteral(u"正在打开索引..."));
  QEventLoop untilOpen;
  QTimer::singleShot(patience, &untilOpen, &QEventLoop::quit);
  connect(this, &AppEnvironment::openingEnded, &untilOpen, &QEventLoop::quit);
  tasks_.spawn([this](std::stop_token stop) { return openIndex(std::move(stop)); });
  untilOpen.exec();
  return openingFailure_;
}

tasks::Async<void> AppEnvironment::openIndex(std::stop_token stop) {
  try {
    co_await index_.open(std::move(stop));
    if (index_.isOpen()) source_.open(index_.engine());
  } catch (const std::exception& error) {
    source_.fail(std::current_exception());
    openingFailure_ = error.what();
  }
  opening_->set(index_.isOpen());
  Q_EMIT openingEnded();
}

void AppEnvironment::startIndexing() {
  tasks_.spawn([this](std::stop_token stop) { return run(std::move(stop)); });
}

tasks::Async<void> AppEnvironment::run(std::stop_token stop) {
  const bool isOpen = co_await tasks::Completion<bool>::wait(opening_);
  if (stop.stop_requested()) co_return;
  if (!isOpen) {
    report(openingFailure_.value_or(std::string()));
    co_return;
  }
  try {
    if (index_.indexer() == nullptr) co_await searchOnly(stop);
    if (!stop.stop_requested()) co_await maintain(stop);
  } catch (const std::exception& error) {
    if (!stop.stop_requested()) report(error.what());
  }
}

tasks::Async<void> AppEnvironment::searchOnly(std::stop_token stop) {
  IndexStatus status;
  status.totalFiles = co_await index_.engine().totalIndexedCount();
  Q_EMIT noticeChanged(QStringLiteral(u"另一个进程正在维护索引，此窗口只能搜索"));
  show(status);
  co_await index_.takeOver(std::move(stop));
}

tasks::Async<void> AppEnvironment::maintain(std::stop_token stop) {
  auto& indexer = *index_.indexer();
  observation_ = indexer.status().observe([this](const IndexStatus& status) {
    show(status);
    searchViewModel_->indexChanged();
  });
  Q_EMIT noticeChanged({});
  const auto entries = co_await index_.engine().totalIndexedCount();
  indexer.status().update([entries](IndexStatus& status) { status.totalFiles = entries; });

  const auto load = [this] { return IndexConfiguration::load(defaults_, options_.homeFolder); };
  auto config = co_await tasks::runOn(interactive_.executor(), load);
  if (stop.stop_requested()) co_return;
  if (options_.roots.empty()) {
    co_await indexer.resume(std::move(config));
  } else {
    config.includedPaths = options_.roots;
    co_await indexer.rebuildIndex(std::move(config));
  }
}

void AppEnvironment::show(const IndexStatus& status) {
  status_ = status;
  Q_EMIT indexStatusChanged(status);
}

void AppEnvironment::report(const std::string& reason) {
  std::fprintf(stderr, "zelnor: %s\n", reason.c_str());
  const auto format =
      index_.isOpen() ? QStringLiteral(u"无法建立索引：%1") : QStringLiteral(u"无法打开索引：%1");
  Q_EMIT failed(format.arg(QString::fromStdString(reason)));
}

void AppEnvironment::shutDown() {
  QEventLoop untilEnded;
  tasks::Task::spawn(main_.executor(), [&, this](std::stop_token) -> tasks::Async<void> {
    co_await endEverything();
    untilEnded.quit();
  });
  untilEnded.exec();
}

tasks::Async<void> AppEnvironment::endEverything() {
  tasks_.cancelAll();
  source_.fail(std::make_exception_ptr(
      std::system_error(std::make_error_code(std::errc::operation_canceled))));
  const auto ends = {ended(preferences_), ended(*searchViewModel_), ended(*indexViewModel_),
                     ended(*bookmarkViewModel_), ended(desktop_)};
  co_await index_.stop();
  co_await tasks_.wait();
  for (const auto& end : ends) co_await tasks::Completion<bool>::wait(end);
  co_await index_.close();
}

}  // namespace zelnor::app
