#pragma once

#include "indexer/IndexConfiguration.h"
#include "tasks/Async.h"

namespace zelnor {

/// Fills the index and keeps it current: the index actor, or what takes its place in a test.
/// Whoever awaits an operation keeps the maintainer alive until it has ended.
class IndexMaintainer {
 public:
  virtual ~IndexMaintainer() = default;

  /// Replaces the index with a fresh scan of `config`; returns when that rebuild has ended. A newer
  /// rebuild cancels an older one, which then ends without an error. Throws what stopped the
  /// rebuild.
  virtual tasks::Async<void> rebuildIndex(IndexConfiguration config) = 0;
  /// Follows the roots of `config` from now on, in place of those before.
  virtual tasks::Async<void> startMonitoring(IndexConfiguration config) = 0;
};

}  // namespace zelnor
