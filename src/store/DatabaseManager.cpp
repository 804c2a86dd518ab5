#include "store/DatabaseManager.h"

#include <utility>

#include "store/IndexDatabase.h"

namespace zelnor {

DatabaseManager::DatabaseManager(const std::string& folder, const tasks::Executor& executor,
                                 Access access)
    : Actor(executor),
      database_(std::make_unique<IndexDatabase>(access == Access::readWrite
                                                    ? IndexDatabase::openForWriting(folder)
                                                    : IndexDatabase::openForReading(folder))) {}

DatabaseManager::~DatabaseManager() = default;

const std::string& DatabaseManager::dbPath() const { return database_->path(); }

tasks::Async<RowDifference> DatabaseManager::batchInsert(std::vector<FileRecord> records) {
  co_return co_await onActor([&] { return database_->batchInsert(records); });
}

tasks::Async<void> DatabaseManager::deleteByPaths(std::vector<std::string> paths) {
  co_await onActor([&] { database_->deleteByPaths(paths); });
}

tasks::Async<RowDifference> DatabaseManager::apply(FileChanges changes) {
  co_return co_await onActor([&] { return database_->apply(std::move(changes)); });
}

tasks::Async<std::int64_t> DatabaseManager::totalFileCount() {
  co_return co_await onActor([&] { return database_->totalFileCount(); });
}

tasks::Async<std::vector<FileRecord>> DatabaseManager::search(SelectStatement statement,
                                                              std::int64_t limit,
                                                              std::stop_token stop) {
  co_return co_await onActor([&] { return database_->search(statement, limit, stop); });
}

tasks::Async<std::int64_t> DatabaseManager::searchCount(SelectStatement statement,
                                                        std::stop_token stop) {
  co_return co_await onActor([&] { return database_->searchCount(statement, stop); });
}

tasks::Async<void> DatabaseManager::rebuildFTS() {
  co_await onActor([&] { database_->rebuildFTS(); });
}

tasks::Async<void> DatabaseManager::clearAll() {
  co_await onActor([&] { database_->clearAll(); });
}

tasks::Async<std::vector<FileRecord>> DatabaseManager::lacking(std::vector<FileRecord> records) {
  co_return co_await onActor([&] { return database_->lacking(std::move(records)); });
}

tasks::Async<void> DatabaseManager::beginBulkLoad(std::int32_t source) {
  co_await onActor([&] { database_->beginBulkLoad(source); });
}

tasks::Async<void> DatabaseManager::endBulkLoad() {
  co_await onActor([&] { database_->endBulkLoad(); });
}

tasks::Async<void> DatabaseManager::breakOffBulkLoad() {
  co_await onActor([&] { database_->breakOffBulkLoad(); });
}

tasks::Async<std::optional<std::int32_t>> DatabaseManager::unfinishedBulkLoad() {
  co_return co_await onActor([&] { return database_->unfinishedBulkLoad(); });
}

tasks::Async<void> DatabaseManager::beginBurst() {
  co_await onActor([&] { database_->beginBurst(); });
}

tasks::Async<void> DatabaseManager::endBurst() {
  co_await onActor([&] { database_->endBurst(); });
}

tasks::Async<bool> DatabaseManager::mergeStep() {
  co_return co_await onActor([&] { return database_->mergeStep(); });
}

tasks::Async<bool> DatabaseManager::isMergingDeferred() {
  co_return co_await onActor([&] { return database_->isMergingDeferred(); });
}

void DatabaseManager::setInterrupted(bool isInterrupted) {
  database_->setInterrupted(isInterrupted);
}

}  // namespace zelnor
