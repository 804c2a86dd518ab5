#include "platform/linux/changes/SweptFolders.h"

#include <chrono>

namespace zelnor::platform {

namespace {

constexpr std::int64_t kUnknown = 0;
constexpr std::size_t kChunk = 256;

/// A folder that changes twice within the clock's step keeps its time. So a time that is not yet
/// past proves nothing; a second covers the clocks of all local file systems but FAT's, and most
/// servers'.
std::int64_t provenStamp(std::int64_t statusChange) {
  using std::chrono::nanoseconds;
  constexpr std::int64_t kMargin = nanoseconds(std::chrono::seconds(1)).count();
  const auto now =
      std::chrono::duration_cast<nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
          .count();
  return statusChange + kMargin < now ? statusChange : kUnknown;
}

}  // namespace

void SweptFolders::add(const std::string& path, const EntryState& state) {
  const std::scoped_lock lock(mutex_);
  stamps_[path] = provenStamp(state.statusChange);
}

void SweptFolders::addUnknown(const std::string& path) {
  const std::scoped_lock lock(mutex_);
  stamps_[path] = kUnknown;
}

void SweptFolders::remove(const std::string& path) {
  const std::scoped_lock lock(mutex_);
  stamps_.erase(path);
}

void SweptFolders::removeTree(const std::string& path) {
  const std::scoped_lock lock(mutex_);
  stamps_.erase(path);
  stamps_.erase(stamps_.lower_bound(path + '/'), stamps_.lower_bound(path + char('/' + 1)));
}

std::size_t SweptFolders::size() const {
  const std::scoped_lock lock(mutex_);
  return stamps_.size();
}

void SweptFolders::sweep(const std::function<void(const std::string&)>& changed,
                         const std::function<bool()>& isStopped) const {
  std::optional<std::string> last;
  while (!isStopped()) {
    const auto chunk = after(last);
    if (chunk.empty()) return;
    for (const auto& [path, stamp] : chunk) {
      const auto state = examineTarget(path);
      if (state.presence == EntryState::Presence::unknown) continue;
      if (stamp == kUnknown || !state.isFolder() || state.statusChange != stamp) changed(path);
    }
    last = chunk.back().first;
  }
}

void SweptFolders::forEach(const std::function<void(const std::string&)>& visit,
                           const std::function<bool()>& isStopped) const {
  std::optional<std::string> last;
  while (!isStopped()) {
    const auto chunk = after(last);
    if (chunk.empty()) return;
    for (const auto& [path, stamp] : chunk) visit(path);
    last = chunk.back().first;
  }
}

std::vector<SweptFolders::Stamped> SweptFolders::after(
    const std::optional<std::string>& path) const {
  const std::scoped_lock lock(mutex_);
  std::vector<Stamped> chunk;
  auto next = path ? stamps_.upper_bound(*path) : stamps_.begin();
  while (next != stamps_.end() && chunk.size() < kChunk) chunk.emplace_back(*next++);
  return chunk;
}

}  // namespace zelnor::platform
