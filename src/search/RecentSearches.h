#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/DefaultsStore.h"
#include "tasks/Async.h"

namespace zelnor {

/// The texts searched for last, newest first, kept in the defaults store under "RecentSearches".
/// Used on one thread.
class RecentSearches {
 public:
  static constexpr std::size_t kLimit = 8;

  /// Reads the stored list; anything else than a list of strings counts as an empty one. Writing
  /// happens on `background`, in order, and uses `defaults` there.
  RecentSearches(platform::DefaultsStore& defaults, const tasks::Executor& background);

  [[nodiscard]] const std::vector<std::string>& texts() const { return texts_; }

  /// Puts `text` in front, in place of an equal one. Answers whether that changed the list; it is
  /// stored then.
  bool record(const std::string& text);

  /// Returns when everything recorded so far has been written.
  [[nodiscard]] tasks::Async<void> flush() const;

 private:
  platform::DefaultsStore& defaults_;
  tasks::Executor writer_;
  std::vector<std::string> texts_;
};

}  // namespace zelnor
