#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/linux/changes/EntryState.h"

namespace zelnor::platform {

/// What a source saw happen, in terms of one folder and a name in it.
struct FolderChange {
  std::string folder;
  std::string name;       ///< empty: the folder itself
  bool isFolder = false;  ///< what the name means, or meant
  bool arrived = false;   ///< created or moved in
  bool left = false;      ///< removed or moved away
  bool renamed = false;   ///< moved, one way or the other
  bool written = false;
  bool attributesChanged = false;
};

/// Where a source tells what it sees. Called without any lock held, on the thread that calls the
/// source.
class ChangeSink {
 public:
  virtual ~ChangeSink() = default;

  virtual void folderChanged(const FolderChange& change) = 0;
  /// The kernel dropped changes: any entry may have changed.
  virtual void changesLost() = 0;
  /// These folders are no longer followed by the source, because others matter more.
  virtual void givenUp(const std::vector<std::string>& folders) = 0;
};

/// A way to learn of changes in folders.
///
/// `follow`, `unfollow` and the like may be called on any thread, `readChanges` on one.
class ChangeSource {
 public:
  virtual ~ChangeSource() = default;

  /// Begins to report what happens directly in the folder at `path` (or goes on to, wherever the
  /// folder was before). Answers whether it does; otherwise another source has to.
  /// Changes that happen after the call has begun may be missed, those after its end are not.
  virtual bool follow(const std::string& path, const EntryState& state, ChangeSink& sink) = 0;
  /// The folder at `path` is no longer there, nor is what was below it; they may turn up elsewhere.
  virtual void detach(const std::string& path) = 0;
  /// Lets go of the folders that were detached and did not turn up.
  virtual void releaseDetached() = 0;
  /// Whether it tells when the attributes of the folder at `path` change, after `follow` has been
  /// tried: the folder that it is in may be enough for that.
  [[nodiscard]] virtual bool tellsOf(const std::string& path) const = 0;
  [[nodiscard]] virtual std::size_t followedFolders() const = 0;

  /// Readable when there are changes to read.
  [[nodiscard]] virtual int descriptor() const = 0;
  /// Reads what there is, without waiting.
  virtual void readChanges(ChangeSink& sink) = 0;
};

}  // namespace zelnor::platform
