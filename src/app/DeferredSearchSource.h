#pragma once

#include <exception>
#include <memory>

#include "search/SearchSource.h"
#include "tasks/Completion.h"

namespace zelnor::app {

/// A search source that can be asked before the real one is there: who asks early waits.
class DeferredSearchSource final : public SearchSource {
 public:
  tasks::Async<SearchPage> search(SearchQuery query, std::int64_t limit, std::int64_t offset,
                                  std::stop_token stop) override;
  tasks::Async<std::int64_t> searchCount(SearchQuery query, std::stop_token stop) override;

  /// From now on `source` answers; it outlives its last answer.
  void open(SearchSource& source) { source_->set(&source); }
  /// There will be no source: who asks or has asked is told `reason`. No effect after `open`.
  void fail(std::exception_ptr reason) { source_->fail(std::move(reason)); }

 private:
  using Source = tasks::Completion<SearchSource*>;
  std::shared_ptr<Source> source_ = std::make_shared<Source>();
};

}  // namespace zelnor::app
