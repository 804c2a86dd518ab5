#pragma once

#include <functional>
#include <utility>

#include "indexer/IndexStatus.h"

namespace zelnor {

/// What the indexer is doing, for everybody who shows it. Main thread only.
class LiveIndexStatus {
 public:
  [[nodiscard]] const IndexStatus& value() const { return value_; }

  /// Changes the status and tells the observer, also when it stays the same: the index may have
  /// changed all the same.
  void update(const std::function<void(IndexStatus&)>& change) {
    change(value_);
    if (observer_) observer_(value_);
  }
  /// The one to be told after each change of the status or of the rows of the index, on the main
  /// thread.
  void observe(std::function<void(const IndexStatus&)> observer) {
    observer_ = std::move(observer);
  }

 private:
  IndexStatus value_;
  std::function<void(const IndexStatus&)> observer_;
};

}  // namespace zelnor
