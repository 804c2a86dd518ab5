#pragma once

#include <cstdint>
#include <exception>
#include <stop_token>
#include <string>

#include "platform/FolderVisitor.h"
#include "platform/IndexView.h"
#include "platform/linux/changes/StreamScope.h"

namespace zelnor::platform {

/// Whom a comparison tells what it comes across.
class ReconcileVisitor : public FolderVisitor {
 public:
  /// The entry at `path` is not in the index as it is on disk.
  virtual void differs(std::string path, std::uint32_t flags) = 0;
  /// Only with Depth::children: a folder that the index does not know, at least not at this path.
  virtual void foundFolder(const std::string& path) = 0;
};

/// Compares what is on disk below a folder with what the index knows there, as a merge of two walks
/// in the same order, so that memory stays proportional to depth.
class Reconciler {
 public:
  enum class Depth : std::uint8_t { tree, children };

  Reconciler(const StreamScope& scope, ReconcileVisitor& visitor, std::stop_token stop)
      : scope_(scope), visitor_(visitor), stop_(std::move(stop)) {}

  /// Compares below `folder`, which is on disk and in scope (or a root). `folder` itself always
  /// differs.
  /// Without a cursor every entry on disk differs. A folder that cannot be listed differs in
  /// nothing below it. Throws what the cursor throws.
  void compare(const std::string& folder, IndexCursor* known, Depth depth);

  /// All that is on disk below `folder` differs, and all that the index knows below `former`, where
  /// the folder was before: each entry after the one that it may have been. Whoever applies a part
  /// of this has both sides of most moves.
  void reportMoved(const std::string& folder, const std::string& former, IndexCursor& known);

  /// All that the index knows below `folder` differs: nothing is there any more.
  void reportAllKnown(const std::string& folder, IndexCursor& known);

 private:
  const StreamScope& scope_;
  ReconcileVisitor& visitor_;
  std::stop_token stop_;
};

}  // namespace zelnor::platform
