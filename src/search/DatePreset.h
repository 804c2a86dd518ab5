#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "search/Date.h"
#include "search/LabelledEnum.h"

namespace zelnor {

/// A range of modification times that ends now.
enum class DatePreset : std::uint8_t { any, today, week, month, threeMonths, year, custom };

template <>
inline constexpr std::array kCases<DatePreset>{
    LabelledCase{DatePreset::any, "any", "不限时间"},
    LabelledCase{DatePreset::today, "today", "今天"},
    LabelledCase{DatePreset::week, "week", "近 7 天"},
    LabelledCase{DatePreset::month, "month", "近 30 天"},
    LabelledCase{DatePreset::threeMonths, "three_months", "近 3 个月"},
    LabelledCase{DatePreset::year, "year", "近 1 年"},
    LabelledCase{DatePreset::custom, "custom", "自定义..."},
};

/// The start of the preset's range, to the millisecond, or nothing if it has none. Days, months and
/// years are those of the user's calendar in `timeZone` (a name such as "Europe/Paris"; empty for
/// the one that the system is set to by now): the time of day stays, and a day that a shorter month
/// lacks becomes that month's last.
std::optional<Date> fromDate(DatePreset preset, Date now, const std::string& timeZone = {});

}  // namespace zelnor
