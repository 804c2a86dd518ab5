#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "indexer/IndexStatus.h"

namespace zelnor {

/// What the indexer is doing, for everybody who shows it. Main thread only.
class LiveIndexStatus {
 public:
  using Observer = std::function<void(const IndexStatus&)>;

  /// Keeps an observer: it is told as long as this lives. May outlive the status.
  class [[nodiscard]] Observation {
   public:
    Observation() = default;
    Observation(Observation&&) = default;
    Observation& operator=(Observation&&) = default;
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;
    ~Observation() = default;

   private:
    friend class LiveIndexStatus;
    explicit Observation(std::shared_ptr<const Observer> observer)
        : observer_(std::move(observer)) {}

    std::shared_ptr<const Observer> observer_;
  };

  [[nodiscard]] const IndexStatus& value() const { return value_; }

  /// Changes the status and tells the observers, also when it stays the same: the index may have
  /// changed all the same.
  void update(const std::function<void(IndexStatus&)>& change) {
    change(value_);
    forgetGone();
    // A copy, because observers may come and go meanwhile; who has gone is not told any more.
    for (const auto& observer : std::vector(observers_)) {
      if (const auto alive = observer.lock()) (*alive)(value_);
    }
  }

  /// Has `observer` told after each change of the status or of the rows of the index, on the main
  /// thread, in the order in which observers came.
  Observation observe(Observer observer) {
    forgetGone();
    const auto kept = std::make_shared<const Observer>(std::move(observer));
    observers_.emplace_back(kept);
    return Observation(kept);
  }

 private:
  void forgetGone() {
    std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
  }

  IndexStatus value_;
  std::vector<std::weak_ptr<const Observer>> observers_;  ///< owned by their observations
};

}  // namespace zelnor
