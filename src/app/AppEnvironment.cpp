#include "app/AppEnvironment.h"

#include <cstdio>
#include <exception>
#include <system_error>
#include <utility>

#include <asio/co_spawn.hpp>
#include <asio/use_awaitable.hpp>

#include <QEventLoop>

#include "platform/Priority.h"
#include "search/SearchServices.h"

namespace zelnor::app {

namespace {

constexpr std::size_t kInteractiveThreads = 2;
constexpr std::size_t kBackgroundThreads = 3;

void printLine(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

/// Runs `work`, which the caller keeps, on `executor`; answers what it returns. Pass a named
/// function object: GCC 12 destroys a temporary twice that owns something and is an argument in a
/// co_await expression.
template <class Work>
auto runOn(tasks::Executor executor, const Work& work)
    -> tasks::Async<std::invoke_result_t<const Work&>> {
  using Result = std::invoke_result_t<const Work&>;
  co_return co_await asio::co_spawn(
      executor, [&work]() -> tasks::Async<Result> { co_return work(); }, asio::use_awaitable);
}

}  // namespace

AppEnvironment::AppEnvironment(Options options)
    : options_(std::move(options)),
      interactive_(kInteractiveThreads),
      background_(kBackgroundThreads, platform::enterBackgroundPriority),
      defaults_(options_.settingsFolder),
      clock_(interactive_.executor()),
      searchViewModel_(std::make_unique<SearchViewModel>(
          SearchServices{source_, clock_, defaults_, main_.executor(), interactive_.executor()})),
      tasks_(main_.executor()) {}

AppEnvironment::~AppEnvironment() = default;

void AppEnvironment::start() {
  Q_EMIT noticeChanged(QStringLiteral(u"正在打开索引..."));
  tasks_.spawn([this](std::stop_token stop) { return run(std::move(stop)); });
}

tasks::Async<void> AppEnvironment::run(std::stop_token stop) {
  try {
    co_await open();
    if (!stop.stop_requested()) co_await showCount();
    if (!stop.stop_requested()) co_await rebuildIfNeeded();
  } catch (const std::exception& error) {
    source_.fail(std::current_exception());
    if (!stop.stop_requested()) report(error);
  }
}

tasks::Async<void> AppEnvironment::open() {
  platform::ChangeStreamOptions changes;
  changes.ownPaths = {options_.settingsFolder};
  const FileIndexActor::Surroundings surroundings{.dataFolder = options_.dataFolder,
                                                  .background = background_.executor(),
                                                  .main = main_.executor(),
                                                  .defaults = defaults_,
                                                  .changes = changes,
                                                  .log = printLine};
  const auto interactive = interactive_.executor();
  const auto openIndex = [surroundings, interactive] {
    return std::make_unique<IndexAccess>(surroundings, interactive);
  };
  index_ = co_await runOn(interactive, openIndex);
  source_.open(index_->engine());
  if (auto* indexer = index_->indexer()) {
    observation_ = indexer->status().observe([this](const IndexStatus& status) {
      Q_EMIT indexStatusChanged(status);
      searchViewModel_->indexChanged();
    });
    Q_EMIT noticeChanged({});
  } else {
    Q_EMIT noticeChanged(QStringLiteral(u"另一个进程正在维护索引，此窗口只能搜索"));
  }
}

tasks::Async<void> AppEnvironment::showCount() {
  entries_ = co_await index_->engine().totalIndexedCount();
  if (auto* indexer = index_->indexer()) {
    indexer->status().update([this](IndexStatus& status) { status.totalFiles = entries_; });
  } else {
    IndexStatus status;
    status.totalFiles = entries_;
    Q_EMIT indexStatusChanged(status);
  }
}

tasks::Async<void> AppEnvironment::rebuildIfNeeded() {
  auto* indexer = index_->indexer();
  if (indexer == nullptr) co_return;
  const auto load = [this] { return IndexConfiguration::load(defaults_, options_.homeFolder); };
  auto config = co_await runOn(interactive_.executor(), load);
  if (options_.roots.empty()) {
    co_await indexer->resume(std::move(config));
  } else {
    config.includedPaths = options_.roots;
    co_await indexer->rebuildIndex(std::move(config));
  }
}

void AppEnvironment::report(const std::exception& error) {
  std::fprintf(stderr, "zelnor: %s\n", error.what());
  const auto format =
      index_ ? QStringLiteral(u"无法建立索引：%1") : QStringLiteral(u"无法打开索引：%1");
  Q_EMIT failed(format.arg(QString::fromUtf8(error.what())));
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
  const auto stopped = std::make_shared<tasks::Completion<bool>>();
  searchViewModel_->stop([stopped] { stopped->set(true); });
  if (index_) {
    index_->interruptSearch();
    if (auto* indexer = index_->indexer()) co_await indexer->shutDown();
  }
  co_await tasks_.wait();
  co_await tasks::Completion<bool>::wait(stopped);
  // Closing a database may have to write.
  const auto close = [this] {
    index_.reset();
    return true;
  };
  co_await runOn(interactive_.executor(), close);
}

}  // namespace zelnor::app
