#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "search/DatePreset.h"
#include "search/SearchFilter.h"

namespace zelnor {
namespace {

using namespace std::chrono_literals;

/// A moment of UTC.
Date at(std::chrono::year_month_day day, std::chrono::seconds timeOfDay) {
  const auto moment = std::chrono::sys_days(day).time_since_epoch() + timeOfDay;
  return Date::fromUnix(std::chrono::duration<double>(moment).count());
}

TEST(DatePreset, CountsBackOnTheCalendarOfTheTimeZone) {
  struct Case {
    DatePreset preset;
    Date now;
    std::string timeZone;
    std::optional<Date> start;
  };
  using namespace std::chrono;
  const auto now = at(2024y / 5 / 31, 15h + 30min + 12s);
  const std::vector<Case> cases{
      {DatePreset::any, now, "UTC", std::nullopt},
      {DatePreset::custom, now, "UTC", std::nullopt},
      {DatePreset::today, now, "UTC", at(2024y / 5 / 31, 0h)},
      {DatePreset::week, now, "UTC", at(2024y / 5 / 24, 15h + 30min + 12s)},
      {DatePreset::month, now, "UTC", at(2024y / 5 / 1, 15h + 30min + 12s)},
      // 31 February is the month's last day, in leap years and others.
      {DatePreset::threeMonths, now, "UTC", at(2024y / 2 / 29, 15h + 30min + 12s)},
      {DatePreset::threeMonths, at(2023y / 5 / 31, 1h), "UTC", at(2023y / 2 / 28, 1h)},
      {DatePreset::year, at(2024y / 2 / 29, 1h), "UTC", at(2023y / 2 / 28, 1h)},
      {DatePreset::threeMonths, at(2024y / 1 / 15, 1h), "UTC", at(2023y / 10 / 15, 1h)},
      // 17:00 UTC is already tomorrow in Shanghai.
      {DatePreset::today, at(2024y / 5 / 30, 17h), "Asia/Shanghai", at(2024y / 5 / 30, 16h)},
      // The same time of day a week ago, before the clocks went forward.
      {DatePreset::week, at(2024y / 4 / 2, 10h), "Europe/Paris", at(2024y / 3 / 26, 11h)},
      // In Cairo this day begins at one o'clock: the clocks go forward at midnight.
      {DatePreset::today, at(2024y / 4 / 26, 10h), "Africa/Cairo", at(2024y / 4 / 25, 22h)},
      // In Havana this day has two midnights; it begins with the first.
      {DatePreset::today, at(2023y / 11 / 5, 15h), "America/Havana", at(2023y / 11 / 5, 4h)},
  };
  for (const auto& [preset, moment, timeZone, start] : cases) {
    const auto actual = fromDate(preset, moment, timeZone);
    const auto seconds = [](std::optional<Date> date) { return date ? date->unixSeconds() : 0; };
    EXPECT_EQ(actual.has_value(), start.has_value()) << rawValue(preset);
    EXPECT_DOUBLE_EQ(seconds(actual), seconds(start)) << rawValue(preset) << ' ' << timeZone;
  }
}

/// The time zone of the test's process, as it was at the end.
class SystemTimeZone {
 public:
  SystemTimeZone() {
    if (const auto* before = std::getenv("TZ")) before_ = before;
  }
  SystemTimeZone(const SystemTimeZone&) = delete;
  SystemTimeZone& operator=(const SystemTimeZone&) = delete;
  ~SystemTimeZone() {
    if (before_) {
      set(*before_);
    } else {
      unsetenv("TZ");
    }
  }
  static void set(const std::string& zone) { setenv("TZ", zone.c_str(), /*replace=*/1); }

 private:
  std::optional<std::string> before_;
};

TEST(DatePreset, IsThatOfTheTimeZoneOfTheMoment) {
  using namespace std::chrono;
  const SystemTimeZone zone;
  const auto now = at(2024y / 5 / 30, 17h);
  for (const auto& [name, start] :
       std::vector<std::pair<std::string, Date>>{{"Asia/Shanghai", at(2024y / 5 / 30, 16h)},
                                                 {"America/New_York", at(2024y / 5 / 30, 4h)},
                                                 {"UTC", at(2024y / 5 / 30, 0h)},
                                                 {"Asia/Shanghai", at(2024y / 5 / 30, 16h)}}) {
    SystemTimeZone::set(name);
    EXPECT_EQ(fromDate(DatePreset::today, now), start) << name;
    EXPECT_EQ(SearchFilter{.datePreset = DatePreset::today}.fromDate(now), start) << name;
  }
}

TEST(Date, TruncatesWholeSecondsTowardZeroAndStaysInRange) {
  EXPECT_EQ(Date::fromUnix(1.9).wholeUnixSeconds(), 1);
  EXPECT_EQ(Date::fromUnix(-1.9).wholeUnixSeconds(), -1);
  EXPECT_EQ(Date{1e300}.wholeUnixSeconds(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(Date{-1e300}.wholeUnixSeconds(), std::numeric_limits<std::int64_t>::min());
}

}  // namespace
}  // namespace zelnor
