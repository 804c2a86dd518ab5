#include "search/DateJson.h"

#include <cmath>
#include <cstdint>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace zelnor {

void to_json(nlohmann::ordered_json& json, const Date& date) {
  // Up to here every whole number is exact as a double, and fits 64 bits.
  constexpr auto kExact = 0x1p53;
  const auto seconds = date.sinceReference;
  if (std::trunc(seconds) == seconds && std::abs(seconds) <= kExact) {
    json = static_cast<std::int64_t>(seconds);
  } else {
    json = seconds;
  }
}

void from_json(const nlohmann::ordered_json& json, Date& date) {
  // The library would also take a Boolean for a number.
  if (!json.is_number()) throw std::invalid_argument("a date must be a number of seconds");
  date.sinceReference = json.get<double>();
}

}  // namespace zelnor
