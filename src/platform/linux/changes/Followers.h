#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/ChangeStream.h"
#include "platform/linux/changes/ChangeSource.h"
#include "platform/linux/changes/SweptFolders.h"

namespace zelnor::platform {

/// The ways to follow folders, best first: each folder is followed by the first source that can,
/// and swept if none does. On a network file system the kernel tells only what this machine does,
/// so its folders are swept as well. Thread-safe.
class Followers {
 public:
  /// Sources in the order in which they are asked.
  explicit Followers(std::vector<std::unique_ptr<ChangeSource>> sources)
      : sources_(std::move(sources)) {}

  /// Follows the folder at `path`, one way or the other. Answers false if it may not be listed; a
  /// path where there is no folder is passed over.
  bool follow(const std::string& path, bool isRoot, ChangeSink& sink);
  void sweep(const std::string& path) { swept_.addUnknown(path); }
  void detach(const std::string& path);
  void releaseDetached();

  [[nodiscard]] std::size_t followedFolders() const;
  [[nodiscard]] const SweptFolders& swept() const { return swept_; }
  [[nodiscard]] const std::vector<std::unique_ptr<ChangeSource>>& sources() const {
    return sources_;
  }

 private:
  [[nodiscard]] bool isToldOf(const std::string& path) const;
  bool followLive(const std::string& path, const EntryState& state, ChangeSink& sink);

  std::vector<std::unique_ptr<ChangeSource>> sources_;
  SweptFolders swept_;
};

/// The sources that work here: those of `options`, or all.
std::vector<std::unique_ptr<ChangeSource>> openSources(const ChangeStreamOptions& options);

}  // namespace zelnor::platform
