#include "search/SearchEngine.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "search/RegularExpression.h"
#include "search/RegularExpressionSearch.h"
#include "search/SearchStatements.h"

namespace zelnor {

namespace {

constexpr std::int64_t kExpressionScanRows = 50'000;

std::vector<SearchResult> results(std::vector<FileRecord> records) {
  std::vector<SearchResult> wrapped;
  wrapped.reserve(records.size());
  for (auto& record : records) wrapped.push_back({std::move(record)});
  return wrapped;
}

}  // namespace

tasks::Async<std::vector<SearchResult>> SearchEngine::search(SearchQuery query, std::int64_t limit,
                                                             std::int64_t offset) {
  if (query.mode.kind == SearchMode::Kind::empty) co_return std::vector<SearchResult>{};
  if (query.mode.kind == SearchMode::Kind::regex)
    co_return co_await searchByExpression(std::move(query));
  co_return results(co_await database_.search(buildSearchSQL(query, limit, offset), limit));
}

tasks::Async<std::vector<SearchResult>> SearchEngine::searchByExpression(SearchQuery query) {
  co_return co_await onActor([&]() -> tasks::Async<std::vector<SearchResult>> {
    auto expression = RegularExpression::compile(query.mode.pattern);
    if (!expression) co_return std::vector<SearchResult>{};
    const auto everything =
        SearchQuery::parsed("", query.filter, query.sortBy, query.sortAscending);
    const auto listing = buildSearchSQL(everything, kExpressionScanRows, /*offset=*/0);
    auto records = co_await database_.search(listing, kExpressionScanRows);
    co_return results(matchingRecords(*expression, std::move(records)));
  });
}

tasks::Async<std::int64_t> SearchEngine::searchCount(SearchQuery query) {
  if (query.mode.kind == SearchMode::Kind::empty) co_return 0;
  co_return co_await database_.searchCount(buildCountSQL(query));
}

tasks::Async<std::int64_t> SearchEngine::totalIndexedCount() { return database_.totalFileCount(); }

}  // namespace zelnor
