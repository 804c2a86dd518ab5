#include "cli/RebuildCommand.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/Failure.h"
#include "cli/Progress.h"
#include "indexer/FileIndexActor.h"
#include "platform/FileDefaultsStore.h"
#include "platform/FileLock.h"
#include "platform/Priority.h"
#include "platform/UserFolders.h"
#include "tasks/RunLoop.h"
#include "tasks/ThreadPool.h"

namespace zelnor::cli {

namespace {

namespace fs = std::filesystem;

/// The walk, the writer, and what takes batches from one to the other.
constexpr std::size_t kIndexingThreads = 3;

std::string absoluteRoot(const std::string& folder) {
  std::error_code error;
  if (!fs::is_directory(folder, error)) {
    throw Failure("--root: '" + folder + "' is no folder that can be read");
  }
  return platform::absolutePath(folder);
}

/// Exclusions are plain text, so a path is completed but not changed otherwise.
std::string absolutePrefix(const std::string& prefix) { return fs::absolute(prefix).string(); }

template <class Convert>
std::vector<std::string> converted(const std::vector<std::string>& paths, Convert convert) {
  std::vector<std::string> result;
  result.reserve(paths.size());
  for (const auto& path : paths) result.push_back(convert(path));
  return result;
}

IndexConfiguration userConfiguration() {
  const auto folders = platform::UserFolders::current();
  return IndexConfiguration::load(platform::FileDefaultsStore(folders.config), folders.home);
}

platform::FileLock lockIndex(const std::string& folder) {
  try {
    platform::createPrivateFolder(folder);
    if (auto lock = platform::FileLock::tryAcquire(folder + "/index.lock")) return std::move(*lock);
  } catch (const std::system_error& error) {
    throw Failure("cannot write an index in " + folder + " (" + error.code().message() +
                  "): make the folder writable, or name another with --index");
  }
  throw Failure(
      "the index in " + folder +
      " is being written by Zelnor or by another rebuild: quit it, or wait for it to end");
}

/// An index actor that has come to rest when it goes away.
class RunningActor {
 public:
  RunningActor(tasks::RunLoop& loop, const FileIndexActor::Surroundings& surroundings)
      : loop_(loop), actor_(surroundings) {}
  RunningActor(const RunningActor&) = delete;
  RunningActor& operator=(const RunningActor&) = delete;
  ~RunningActor() { loop_.await(actor_.shutDown()); }

  FileIndexActor* operator->() { return &actor_; }

 private:
  tasks::RunLoop& loop_;
  FileIndexActor actor_;
};

}  // namespace

IndexConfiguration configurationFor(const Options& options) {
  auto configuration = userConfiguration();
  if (options.roots) configuration.includedPaths = converted(*options.roots, absoluteRoot);
  if (options.excluded) configuration.excludedPaths = converted(*options.excluded, absolutePrefix);
  configuration.skipHiddenFiles = options.skipHidden.value_or(configuration.skipHiddenFiles);
  configuration.skipPackageContents =
      options.skipPackages.value_or(configuration.skipPackageContents);
  configuration.skipSymlinks = options.skipSymlinks.value_or(configuration.skipSymlinks);
  return configuration;
}

IndexConfiguration recordedConfiguration(const IndexLocation& location) {
  auto recorded = IndexConfiguration::saved(platform::FileDefaultsStore(location.settingsFolder));
  return recorded ? std::move(*recorded) : userConfiguration();
}

void rebuild(const Options& options, const IndexLocation& location) {
  const auto configuration = configurationFor(options);
  const auto lock = lockIndex(location.dataFolder);
  platform::FileDefaultsStore settings(location.settingsFolder);
  tasks::RunLoop loop;
  const tasks::ThreadPool pool(kIndexingThreads, platform::enterBackgroundPriority);
  RunningActor actor(loop, {location.dataFolder, pool.executor(), loop.executor(), settings});
  Progress progress;
  const auto observation = actor->status().observe(
      [&](const IndexStatus& status) { progress.show(status.processedFiles); });
  loop.await(actor->rebuildIndex(configuration));
  loop.await(actor->settled());
  progress.finish(actor->status().value().totalFiles);
  if (!location.isUsers) configuration.save(settings);
}

}  // namespace zelnor::cli
