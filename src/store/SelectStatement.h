#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace zelnor {

/// A positional parameter: text (bytes, copied by SQLite) or a 64-bit integer.
using Binding = std::variant<std::string, std::int64_t>;

/// A query as text and the values of its "?" in order.
struct SelectStatement {
  std::string sql;
  std::vector<Binding> bindings;

  friend bool operator==(const SelectStatement&, const SelectStatement&) = default;
};

}  // namespace zelnor
