#pragma once

#include <nlohmann/json_fwd.hpp>

#include "search/SearchFilter.h"

namespace zelnor {

/// The stored form of a filter: the three enumerations by their raw values, always; custom bounds
/// only where present.
void to_json(nlohmann::ordered_json& json, const SearchFilter& filter);

/// Requires the three enumerations and ignores unknown keys. Throws `nlohmann::json::exception` or
/// `std::invalid_argument` if a key is missing, of another type, or an unknown raw value.
void from_json(const nlohmann::ordered_json& json, SearchFilter& filter);

}  // namespace zelnor
