#include "app/IndexAccess.h"

#include "platform/UserFolders.h"

namespace zelnor::app {

namespace {

std::optional<platform::FileLock> lockForWriting(const std::string& dataFolder) {
  platform::createPrivateFolder(dataFolder);
  return platform::FileLock::tryAcquire(dataFolder + "/index.lock");
}

std::optional<FileIndexActor> makeIndexer(bool isWriter,
                                          const FileIndexActor::Surroundings& surroundings) {
  return isWriter ? std::optional<FileIndexActor>(std::in_place, surroundings) : std::nullopt;
}

}  // namespace

IndexAccess::IndexAccess(const FileIndexActor::Surroundings& surroundings,
                         const tasks::Executor& interactive)
    : writerLock_(lockForWriting(surroundings.dataFolder)),
      indexer_(makeIndexer(writerLock_.has_value(), surroundings)),
      database_(surroundings.dataFolder, interactive, DatabaseManager::Access::readOnly),
      matchers_(tasks::processorCount()),
      engine_(database_, matchers_.executor()) {}

}  // namespace zelnor::app
