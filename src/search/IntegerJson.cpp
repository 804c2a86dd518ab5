#include "search/IntegerJson.h"

#include <stdexcept>
#include <utility>

#include <nlohmann/json.hpp>

namespace zelnor {

std::int64_t integerFrom(const nlohmann::ordered_json& json) {
  // The library would also take a Boolean or a fraction for a whole number, and wrap one that is
  // too large.
  const bool fits =
      json.is_number_integer() &&
      (!json.is_number_unsigned() || std::in_range<std::int64_t>(json.get<std::uint64_t>()));
  if (!fits) throw std::invalid_argument("must be a whole number of 64 bits");
  return json.get<std::int64_t>();
}

}  // namespace zelnor
