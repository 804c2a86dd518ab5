#pragma once

#include <chrono>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace zelnor::ui {

/// Rows on their way into a look or out of it, eased in and out. Rows that are not on their way
/// take no memory. Time is a parameter; it never goes back.
class RowFades {
 public:
  using Time = std::chrono::milliseconds;

  /// With a `duration` of 0 nothing is ever on its way.
  explicit RowFades(Time duration) : duration_(duration) {}

  /// From now on the row is on its way into the look or, not `isOn`, out of it: from where it is.
  void turn(std::int64_t id, bool isOn, Time now);
  /// How much of the look the row has, from 0 to 1; for one that is not on its way, `isOn` says it.
  [[nodiscard]] double amount(std::int64_t id, bool isOn, Time now) const;
  [[nodiscard]] bool isEmpty() const { return fades_.empty(); }
  /// All rows that are on their way. Those that have arrived are among them for the last time.
  std::vector<std::int64_t> advance(Time now);

 private:
  struct Fade {
    double from = 0;
    bool isOn = false;
    Time start{};
  };

  [[nodiscard]] double amount(const Fade& fade, Time now) const;

  Time duration_;
  std::unordered_map<std::int64_t, Fade> fades_;
};

}  // namespace zelnor::ui
