#include "bench/FollowedIndex.h"

#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "platform/Priority.h"

namespace zelnor::bench {
namespace {

constexpr std::size_t kBackgroundThreads = 3;
constexpr std::chrono::minutes kPatience{10};

constexpr std::string_view kRebuildLine = "[FSEvents] Triggering automatic full rebuild";

platform::ChangeStreamOptions optionsFor(FollowedIndex::Source source) {
  platform::ChangeStreamOptions options;
  options.forcedSource = source;
  return options;
}

/// The stream says how many folders it follows when it has looked at all of them.
std::optional<FollowedIndex::Folders> foldersIn(const std::string& line) {
  long long live = 0;
  long long swept = 0;
  constexpr int kFields = 2;
  // NOLINTNEXTLINE(cert-err34-c): a line that does not match is another line
  if (std::sscanf(line.c_str(), "[FSEvents] Following %lld folders live, sweeping %lld", &live,
                  &swept) != kFields) {
    return std::nullopt;
  }
  return FollowedIndex::Folders{.live = live, .swept = swept};
}

}  // namespace

IndexConfiguration everythingBelow(std::vector<std::string> roots) {
  IndexConfiguration config;
  config.includedPaths = std::move(roots);
  config.excludedPaths = {};
  config.skipPackageContents = false;
  return config;
}

FollowedIndex::FollowedIndex(const std::string& data, Source source)
    : defaults_(data),
      pool_(kBackgroundThreads, platform::enterBackgroundPriority),
      actor_({.dataFolder = data,
              .background = pool_.executor(),
              .main = loop_.executor(),
              .defaults = defaults_,
              .changes = optionsFor(source),
              .log = [this](const std::string& line) { note(line); }}) {}

FollowedIndex::~FollowedIndex() { loop_.await(actor_.shutDown()); }

void FollowedIndex::build(const std::vector<std::string>& roots) {
  loop_.await(actor_.rebuildIndex(everythingBelow(roots)));
  waitUntilFollowing();
  settle();
}

void FollowedIndex::follow(const std::vector<std::string>& roots) {
  loop_.await(actor_.startMonitoring(everythingBelow(roots)));
  waitUntilFollowing();
}

FollowedIndex::Folders FollowedIndex::folders() const {
  const std::scoped_lock lock(mutex_);
  return folders_.value_or(Folders{});
}

int FollowedIndex::automaticRebuilds() const {
  const std::scoped_lock lock(mutex_);
  return automaticRebuilds_;
}

void FollowedIndex::note(const std::string& line) {
  {
    const std::scoped_lock lock(mutex_);
    if (line.starts_with(kRebuildLine)) ++automaticRebuilds_;
    if (const auto folders = foldersIn(line)) folders_ = folders;
  }
  changed_.notify_all();
}

void FollowedIndex::waitUntilFollowing() {
  std::unique_lock lock(mutex_);
  if (!changed_.wait_for(lock, kPatience, [this] { return folders_.has_value(); })) {
    throw std::runtime_error("the tree is not followed");
  }
}

}  // namespace zelnor::bench
