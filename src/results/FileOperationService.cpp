#include "results/FileOperationService.h"

#include <deque>
#include <optional>
#include <stop_token>
#include <utility>

#include <QPointer>

#include "results/AlertQueue.h"
#include "results/FileOperationServices.h"
#include "results/TrashRun.h"
#include "tasks/RunOn.h"
#include "tasks/TaskGroup.h"

namespace zelnor {

namespace {

constexpr const char* kCannotRename = "无法重命名";

/// The name is taken as it was typed; what is wrong with it the system says.
std::string sibling(const std::string& path, const std::string& name) {
  return path.substr(0, path.rfind('/') + 1) + name;
}

}  // namespace

/// What runs by itself. Tasks use the service, which lives until they have ended.
class FileOperationService::Tasks {
 public:
  Tasks(FileOperationService& owner, const FileOperationServices& services)
      : owner_(owner), services_(services), group_(services.main) {}

  void moveToTrash(std::vector<SearchResult> results) {
    if (results.empty() || group_.isClosed()) return;
    waiting_.push_back(std::move(results));
    if (isMoving_) return;
    setMoving(true);
    group_.spawn([this](const std::stop_token&) { return moveAll(); });
  }
  void cancel() {
    waiting_.clear();
    run_.request_stop();
  }
  [[nodiscard]] bool isMoving() const { return isMoving_; }
  [[nodiscard]] bool isTakingLong() const { return isTakingLong_; }

  void rename(const std::string& path, const std::string& newName) {
    group_.spawn([this, path, to = sibling(path, newName)](const std::stop_token&) {
      return renameOne(path, to);
    });
  }

  using Show = void (platform::FileOpener::*)(const std::string&, const platform::Activation&);
  void show(const std::string& path, Show how) {
    services_.activation.request(
        [this, owner = QPointer(&owner_), path, how](const platform::Activation& activation) {
          if (!owner) return;
          group_.spawn([this, path, how, activation](const std::stop_token&) {
            return showOne(path, how, activation);
          });
        });
  }

  void stop(std::function<void()> stopped) {
    cancel();
    group_.close();
    alerts.close();
    tasks::Task::spawn(services_.main, [this, stopped = std::move(stopped)](
                                           const std::stop_token&) { return waitForEnd(stopped); });
  }

  AlertQueue alerts;

 private:
  tasks::Async<void> moveAll() {
    while (!waiting_.empty()) {
      const auto results = std::move(waiting_.front());
      waiting_.pop_front();
      run_ = {};
      TrashRun run(services_, alerts, group_, observer());
      const auto outcome = co_await run.run(results, run_.get_token());
      setTakingLong(false);
      if (outcome.wasRefused) waiting_.clear();
      Q_EMIT owner_.trashed(outcome.attempted);
    }
    setMoving(false);
  }
  [[nodiscard]] TrashObserver observer() {
    return {
        .progressed = [this](int done, int total) { Q_EMIT owner_.progressChanged(done, total); },
        .isLong = [this] { setTakingLong(true); }};
  }

  tasks::Async<void> renameOne(std::string from, std::string to) {
    std::optional<std::string> reason;
    const auto move = [&] { services_.actions.rename(from, to); };
    try {
      co_await tasks::runOn(services_.blocking, move);
    } catch (const std::exception& error) {
      reason = error.what();
    }
    if (!reason) co_return;
    const AlertText text{.message = kCannotRename, .explanation = *reason};
    co_await alerts.warn(text);
  }

  tasks::Async<void> showOne(std::string path, Show how, platform::Activation activation) {
    const auto ask = [&] { (services_.opener.*how)(path, activation); };
    try {
      co_await tasks::runOn(services_.blocking, ask);
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the user sees that nothing
                                       // opens
    }
  }

  void setMoving(bool isMoving) {
    if (std::exchange(isMoving_, isMoving) != isMoving) Q_EMIT owner_.isMovingChanged();
  }
  void setTakingLong(bool isTakingLong) {
    if (std::exchange(isTakingLong_, isTakingLong) != isTakingLong)
      Q_EMIT owner_.isTakingLongChanged();
  }

  tasks::Async<void> waitForEnd(std::function<void()> stopped) {
    co_await group_.wait();
    stopped();
  }

  FileOperationService& owner_;
  FileOperationServices services_;
  std::deque<std::vector<SearchResult>> waiting_;
  std::stop_source run_;  ///< of the call whose files are being moved
  bool isMoving_ = false;
  bool isTakingLong_ = false;
  tasks::TaskGroup group_;
};

FileOperationService::FileOperationService(const FileOperationServices& services, QObject* parent)
    : QObject(parent), tasks_(std::make_unique<Tasks>(*this, services)) {}

FileOperationService::~FileOperationService() = default;

void FileOperationService::setAlerts(FileOperationAlerts* alerts) {
  tasks_->alerts.setAlerts(alerts);
}

void FileOperationService::moveToTrash(std::vector<SearchResult> results) {
  tasks_->moveToTrash(std::move(results));
}

void FileOperationService::cancel() { tasks_->cancel(); }

bool FileOperationService::isMoving() const { return tasks_->isMoving(); }

bool FileOperationService::isTakingLong() const { return tasks_->isTakingLong(); }

void FileOperationService::rename(const std::string& path, const std::string& newName) {
  tasks_->rename(path, newName);
}

void FileOperationService::open(const std::string& path) {
  tasks_->show(path, &platform::FileOpener::open);
}

void FileOperationService::reveal(const std::string& path) {
  tasks_->show(path, &platform::FileOpener::reveal);
}

void FileOperationService::stop(std::function<void()> stopped) { tasks_->stop(std::move(stopped)); }

}  // namespace zelnor
