#include "indexer/IndexViewModel.h"

#include <exception>
#include <stop_token>
#include <utility>
#include <vector>

#include <asio/co_spawn.hpp>
#include <asio/strand.hpp>
#include <asio/use_awaitable.hpp>

#include <QPointer>

#include "indexer/IndexServices.h"
#include "tasks/TaskGroup.h"

namespace zelnor {

namespace {

tasks::Async<void> save(IndexConfiguration configuration, platform::DefaultsStore& defaults) {
  configuration.save(defaults);
  co_return;
}

std::vector<std::string>& pathsIn(IndexConfiguration& configuration,
                                  IndexViewModel::PathList list) {
  return list == IndexViewModel::PathList::included ? configuration.includedPaths
                                                    : configuration.excludedPaths;
}

}  // namespace

/// What runs by itself. Tasks hold the view model weakly, and what they need by value.
class IndexViewModel::Tasks {
 public:
  Tasks(IndexViewModel& owner, const IndexServices& services)
      : owner_(&owner),
        services_{.maintainer = services.maintainer,
                  .defaults = services.defaults,
                  .writer = asio::make_strand(services.background)},
        main_(services.main),
        group_(services.main) {}

  void startRebuild() {
    group_.spawn([services = services_, owner = owner_,
                  configuration = owner_->configuration()](std::stop_token stop) {
      return rebuild(services, owner, configuration, std::move(stop));
    });
  }

  void startSaving() {
    group_.spawn([services = services_, owner = owner_,
                  configuration = owner_->configuration()](std::stop_token stop) {
      return saveAndFollow(services, owner, configuration, std::move(stop));
    });
  }

  void stop(std::function<void()> stopped) {
    group_.cancelAll();
    tasks::Task::spawn(main_, [this, stopped = std::move(stopped)](const std::stop_token&) {
      return waitForEnd(stopped);
    });
  }

 private:
  using Owner = QPointer<IndexViewModel>;
  struct Services {
    IndexMaintainer& maintainer;
    platform::DefaultsStore& defaults;
    tasks::Executor writer;  ///< stores configurations in the order in which they were saved
  };

  static tasks::Async<void> store(Services services, IndexConfiguration configuration) {
    auto saving = save(std::move(configuration), services.defaults);
    co_await asio::co_spawn(services.writer, std::move(saving), asio::use_awaitable);
  }

  static tasks::Async<void> rebuild(Services services, Owner owner,
                                    IndexConfiguration configuration, std::stop_token stop) {
    if (stop.stop_requested()) co_return;
    std::optional<std::string> failure;
    try {
      auto rebuilt = configuration;
      co_await services.maintainer.rebuildIndex(std::move(rebuilt));
    } catch (const std::exception& error) {
      failure = error.what();
    }
    if (stop.stop_requested() || !owner) co_return;
    if (!failure) co_await store(services, owner->configuration());
    if (!owner) co_return;
    // What was edited while the rebuild ran is not in the index.
    if (!failure && owner->configuration() == configuration) owner->setUnappliedEdits(false);
    if (owner) owner->setRebuildState(/*isRebuilding=*/false, std::move(failure));
  }

  static tasks::Async<void> saveAndFollow(Services services, Owner owner,
                                          IndexConfiguration configuration, std::stop_token stop) {
    co_await store(services, std::move(configuration));
    if (stop.stop_requested() || !owner) co_return;
    auto latest = owner->configuration();
    co_await services.maintainer.startMonitoring(std::move(latest));
  }

  tasks::Async<void> waitForEnd(std::function<void()> stopped) {
    co_await group_.wait();
    stopped();
  }

  Owner owner_;
  Services services_;
  tasks::Executor main_;
  tasks::TaskGroup group_;
};

IndexViewModel::IndexViewModel(const IndexServices& services, QObject* parent)
    : QObject(parent),
      configuration_(IndexConfiguration::load(services.defaults, services.homeFolder)),
      tasks_(std::make_unique<Tasks>(*this, services)) {}

IndexViewModel::~IndexViewModel() = default;

void IndexViewModel::setConfiguration(IndexConfiguration configuration) {
  if (configuration == configuration_) return;
  configuration_ = std::move(configuration);
  const QPointer guard(this);  // a slot may delete it
  Q_EMIT configurationChanged();
  if (guard) setUnappliedEdits(true);
}

void IndexViewModel::addPath(PathList list, std::string path) {
  auto edited = configuration_;
  pathsIn(edited, list).push_back(std::move(path));
  setConfiguration(std::move(edited));
  saveConfiguration();
}

void IndexViewModel::removePath(PathList list, const std::string& path) {
  auto edited = configuration_;
  std::erase(pathsIn(edited, list), path);
  setConfiguration(std::move(edited));
}

void IndexViewModel::startRebuild() {
  if (isRebuildingIndex_) return;
  tasks_->startRebuild();
  setRebuildState(/*isRebuilding=*/true, std::nullopt);
}

void IndexViewModel::saveConfiguration() { tasks_->startSaving(); }

void IndexViewModel::stop(std::function<void()> stopped) { tasks_->stop(std::move(stopped)); }

void IndexViewModel::setRebuildState(bool isRebuilding, std::optional<std::string> error) {
  const QPointer guard(this);  // a slot may delete it
  const bool differs = std::exchange(isRebuildingIndex_, isRebuilding) != isRebuilding;
  const bool errorDiffers = rebuildError_ != error;
  rebuildError_ = std::move(error);
  if (errorDiffers) Q_EMIT rebuildErrorChanged();
  if (differs && guard) Q_EMIT isRebuildingIndexChanged();
}

void IndexViewModel::setUnappliedEdits(bool areThere) {
  if (std::exchange(hasUnappliedEdits_, areThere) != areThere) Q_EMIT hasUnappliedEditsChanged();
}

}  // namespace zelnor
