#pragma once

#include <cstdint>

#include <nlohmann/json_fwd.hpp>

namespace zelnor {

/// The whole number of 64 bits that stored JSON holds. Throws `std::invalid_argument` if it holds
/// anything else.
std::int64_t integerFrom(const nlohmann::ordered_json& json);

}  // namespace zelnor
