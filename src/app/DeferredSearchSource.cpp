#include "app/DeferredSearchSource.h"

#include <utility>

namespace zelnor::app {

tasks::Async<SearchPage> DeferredSearchSource::search(SearchQuery query, std::int64_t limit,
                                                      std::int64_t offset, std::stop_token stop) {
  auto* source = co_await Source::wait(source_);
  auto found = source->search(std::move(query), limit, offset, std::move(stop));
  co_return co_await std::move(found);
}

tasks::Async<std::int64_t> DeferredSearchSource::searchCount(SearchQuery query,
                                                             std::stop_token stop) {
  auto* source = co_await Source::wait(source_);
  auto counted = source->searchCount(std::move(query), std::move(stop));
  co_return co_await std::move(counted);
}

}  // namespace zelnor::app
