#include "search/DatePreset.h"

#include <memory>
#include <mutex>
#include <stdexcept>

#include <unicode/calendar.h>
#include <unicode/timezone.h>

namespace zelnor {

namespace {

constexpr double kMillisecondsPerSecond = 1000;

void check(UErrorCode status) {
  if (U_FAILURE(status)) throw std::runtime_error(u_errorName(status));
}

/// The zone that the system is set to now; ICU's default is the one of its first use.
std::unique_ptr<icu::TimeZone> timeZoneOfUser() {
  static std::mutex mutex;  // ICU finds it out in memory of its own
  const std::scoped_lock lock(mutex);
  return std::unique_ptr<icu::TimeZone>(icu::TimeZone::detectHostTimeZone());
}

std::unique_ptr<icu::TimeZone> timeZoneNamed(const std::string& name) {
  return std::unique_ptr<icu::TimeZone>(
      icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
}

std::unique_ptr<icu::Calendar> calendarAt(Date now, const std::string& timeZone) {
  auto zone = timeZone.empty() ? timeZoneOfUser() : timeZoneNamed(timeZone);
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(zone.release(), status));
  check(status);
  calendar->setTime(now.unixSeconds() * kMillisecondsPerSecond, status);
  check(status);
  return calendar;
}

void moveToStartOfDay(icu::Calendar& calendar) {
  // Where the clocks change at midnight the day begins at the first moment that has its date.
  calendar.setSkippedWallTimeOption(UCAL_WALLTIME_NEXT_VALID);
  calendar.setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
  for (const auto field : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND}) {
    calendar.set(field, 0);
  }
}

void move(icu::Calendar& calendar, UCalendarDateFields field, int amount) {
  UErrorCode status = U_ZERO_ERROR;
  calendar.add(field, amount, status);
  check(status);
}

void moveToStart(DatePreset preset, icu::Calendar& calendar) {
  switch (preset) {
    case DatePreset::today:
      return moveToStartOfDay(calendar);
    case DatePreset::week:
      return move(calendar, UCAL_DATE, -7);
    case DatePreset::month:
      return move(calendar, UCAL_DATE, -30);
    case DatePreset::threeMonths:
      return move(calendar, UCAL_MONTH, -3);
    case DatePreset::year:
      return move(calendar, UCAL_YEAR, -1);
    case DatePreset::any:
    case DatePreset::custom:
      break;
  }
}

}  // namespace

std::optional<Date> fromDate(DatePreset preset, Date now, const std::string& timeZone) {
  if (preset == DatePreset::any || preset == DatePreset::custom) return std::nullopt;
  const auto calendar = calendarAt(now, timeZone);
  moveToStart(preset, *calendar);
  UErrorCode status = U_ZERO_ERROR;
  const auto milliseconds = calendar->getTime(status);
  check(status);
  return Date::fromUnix(milliseconds / kMillisecondsPerSecond);
}

}  // namespace zelnor
