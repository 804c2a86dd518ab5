#pragma once

#include <nlohmann/json_fwd.hpp>

#include "search/Date.h"

namespace zelnor {

/// A moment in stored JSON is its number of seconds since 2001, with every digit it needs and
/// without a fraction if it has none. Reading throws `std::invalid_argument` if there is no number.
void to_json(nlohmann::ordered_json& json, const Date& date);
void from_json(const nlohmann::ordered_json& json, Date& date);

}  // namespace zelnor
