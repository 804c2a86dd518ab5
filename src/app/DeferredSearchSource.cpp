#include "app/DeferredSearchSource.h"

#include <utility>

namespace zelnor::app {

tasks::Async<std::vector<SearchResult>> DeferredSearchSource::search(SearchQuery query,
                                                                     std::int64_t limit,
                                                                     std::int64_t offset) {
  auto* source = co_await Source::wait(source_);
  co_return co_await source->search(std::move(query), limit, offset);
}

tasks::Async<std::int64_t> DeferredSearchSource::searchCount(SearchQuery query) {
  auto* source = co_await Source::wait(source_);
  co_return co_await source->searchCount(std::move(query));
}

}  // namespace zelnor::app
