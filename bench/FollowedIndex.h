#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "indexer/FileIndexActor.h"
#include "platform/ChangeStream.h"
#include "platform/FileDefaultsStore.h"
#include "tasks/RunLoop.h"
#include "tasks/ThreadPool.h"

namespace zelnor::bench {

/// Everything below `roots`, as every measurement lists it.
IndexConfiguration everythingBelow(std::vector<std::string> roots);

/// An index that follows what it holds, put together as the application does, at the priorities of
/// the application.
class FollowedIndex {
 public:
  using Source = std::optional<platform::ChangeSourceKind>;

  /// How many folders are followed in which way.
  struct Folders {
    std::int64_t live = 0;
    std::int64_t swept = 0;
  };

  /// Opens the index in folder `data`, or makes it. Without `source` the best one follows.
  FollowedIndex(const std::string& data, Source source);
  ~FollowedIndex();
  FollowedIndex(const FollowedIndex&) = delete;
  FollowedIndex& operator=(const FollowedIndex&) = delete;

  /// Fills the index with what is below `roots` and follows them; returns when every folder is
  /// followed and what was written is merged. What changed meanwhile may still be on its way.
  void build(const std::vector<std::string>& roots);
  /// Compares what the index knows of `roots` with them and follows them; returns when every folder
  /// has been compared and is followed. What was found may still be on its way into the index.
  void follow(const std::vector<std::string>& roots);

  /// Waits until nothing is left to do about what has been written.
  void settle() { loop_.await(actor_.settled()); }
  [[nodiscard]] Folders folders() const;
  /// Full rebuilds that nobody asked for.
  [[nodiscard]] int automaticRebuilds() const;

 private:
  void note(const std::string& line);
  void waitUntilFollowing();

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<Folders> folders_;
  int automaticRebuilds_ = 0;

  tasks::RunLoop loop_;
  platform::FileDefaultsStore defaults_;
  tasks::ThreadPool pool_;
  FileIndexActor actor_;
};

}  // namespace zelnor::bench
