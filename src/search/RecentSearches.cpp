#include "search/RecentSearches.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <asio/co_spawn.hpp>
#include <asio/post.hpp>
#include <asio/strand.hpp>
#include <asio/use_awaitable.hpp>

namespace zelnor {

namespace {

constexpr std::string_view kKey = "RecentSearches";

tasks::Async<void> nothing() { co_return; }

tasks::Async<void> passThrough(tasks::Executor executor) {
  co_await asio::co_spawn(executor, nothing(), asio::use_awaitable);
}

}  // namespace

RecentSearches::RecentSearches(platform::DefaultsStore& defaults, const tasks::Executor& background)
    : defaults_(defaults),
      writer_(asio::make_strand(background)),
      texts_(defaults.get<std::vector<std::string>>(kKey).value_or(std::vector<std::string>{})) {}

bool RecentSearches::record(const std::string& text) {
  auto texts = texts_;
  std::erase(texts, text);
  texts.insert(texts.begin(), text);
  texts.resize(std::min(texts.size(), kLimit));
  if (texts == texts_) return false;
  texts_ = std::move(texts);
  asio::post(writer_, [&defaults = defaults_, stored = texts_] { defaults.set(kKey, stored); });
  return true;
}

tasks::Async<void> RecentSearches::flush() const { return passThrough(writer_); }

}  // namespace zelnor
