#pragma once

#include <exception>
#include <memory>
#include <utility>
#include <vector>

#include "indexer/IndexMaintainer.h"
#include "store/DatabaseError.h"
#include "tasks/Completion.h"

namespace zelnor::test {

/// Rebuilds take until the test ends them.
class FakeIndexMaintainer final : public IndexMaintainer {
 public:
  std::vector<IndexConfiguration> rebuilds;
  std::vector<IndexConfiguration> followed;

  tasks::Async<void> rebuildIndex(IndexConfiguration config) override {
    rebuilds.push_back(std::move(config));
    const auto end = running_ = std::make_shared<tasks::Completion<bool>>();
    co_await tasks::Completion<bool>::wait(end);
  }
  tasks::Async<void> startMonitoring(IndexConfiguration config) override {
    followed.push_back(std::move(config));
    co_return;
  }

  /// The one that runs, if any.
  void finish() const {
    if (running_) running_->set(true);
  }
  void fail(const DatabaseError& error) const { running_->fail(std::make_exception_ptr(error)); }

 private:
  std::shared_ptr<tasks::Completion<bool>> running_;
};

}  // namespace zelnor::test
