#include "search/SearchEngine.h"

#include <utility>
#include <vector>

#include <asio/co_spawn.hpp>
#include <asio/use_awaitable.hpp>

#include "search/RegularExpression.h"
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

tasks::Async<SearchPage> SearchEngine::search(SearchQuery query, std::int64_t limit,
                                              std::int64_t offset, std::stop_token stop) {
  if (query.mode.kind == SearchMode::Kind::empty) co_return SearchPage{};
  if (query.mode.kind == SearchMode::Kind::regex) {
    auto found = searchByExpression(std::move(query), std::move(stop));
    co_return co_await asio::co_spawn(matchers_, std::move(found), asio::use_awaitable);
  }
  auto statement = buildSearchSQL(query, limit, offset);
  auto found = database_.search(std::move(statement), limit, std::move(stop));
  auto records = co_await std::move(found);
  co_return SearchPage{results(std::move(records))};
}

/// Runs on the matchers.
tasks::Async<SearchPage> SearchEngine::searchByExpression(SearchQuery query, std::stop_token stop) {
  auto expression = RegularExpression::compile(query.mode.pattern);
  if (!expression) co_return SearchPage{};
  const auto everything = SearchQuery::parsed("", query.filter, query.sortBy, query.sortAscending);
  auto listing = buildSearchSQL(everything, kExpressionScanRows, /*offset=*/0);
  auto listed = database_.search(std::move(listing), kExpressionScanRows, stop);
  auto records = co_await std::move(listed);
  auto matching =
      matchingRecords(std::move(*expression), std::move(records), matchers_, budget_, stop);
  auto found = co_await std::move(matching);
  co_return SearchPage{results(std::move(found.records)), found.isIncomplete};
}

tasks::Async<std::int64_t> SearchEngine::searchCount(SearchQuery query, std::stop_token stop) {
  if (query.mode.kind == SearchMode::Kind::empty) co_return 0;
  auto statement = buildCountSQL(query);
  auto counted = database_.searchCount(std::move(statement), std::move(stop));
  co_return co_await std::move(counted);
}

tasks::Async<std::int64_t> SearchEngine::totalIndexedCount() { return database_.totalFileCount(); }

}  // namespace zelnor
