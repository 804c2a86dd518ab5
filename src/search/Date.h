#pragma once

#include <chrono>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>

namespace zelnor {

/// A moment, held as the number that is stored for it: seconds, with their fraction, since
/// 2001-01-01 00:00 UTC. Kept in this form so that a stored moment is written again exactly as it
/// was read.
struct Date {
  double sinceReference = 0;

  /// 2001-01-01 00:00 UTC in seconds since 1970.
  static constexpr double kReference = 978'307'200;

  static constexpr Date fromUnix(double seconds) { return {seconds - kReference}; }
  static Date now() {
    const std::chrono::duration<double> unixTime =
        std::chrono::system_clock::now().time_since_epoch();
    return fromUnix(unixTime.count());
  }

  [[nodiscard]] constexpr double unixSeconds() const { return sinceReference + kReference; }
  /// Seconds since 1970, truncated toward zero; moments that 64 bits cannot hold become the nearest
  /// they can.
  [[nodiscard]] constexpr std::int64_t wholeUnixSeconds() const {
    using Limits = std::numeric_limits<std::int64_t>;
    constexpr auto kBeyond = 0x1p63;
    const auto seconds = unixSeconds();
    if (seconds >= kBeyond) return Limits::max();
    if (seconds < -kBeyond) return Limits::min();
    return static_cast<std::int64_t>(seconds);
  }

  friend auto operator<=>(const Date&, const Date&) = default;
};

}  // namespace zelnor

template <>
struct std::hash<zelnor::Date> {
  std::size_t operator()(const zelnor::Date& date) const noexcept {
    return std::hash<double>{}(date.sinceReference);
  }
};
