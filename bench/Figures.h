#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace zelnor::bench {

/// One number that a measurement comes to.
struct Figure {
  std::string name;
  std::string unit;
  std::optional<double> value;  ///< nothing if it never came about
};
using Figures = std::vector<Figure>;

void to_json(nlohmann::ordered_json& json, const Figure& figure);
void from_json(const nlohmann::ordered_json& json, Figure& figure);

/// The figures for standard output: a table, or JSON with `context` before them.
std::string text(const Figures& figures, const nlohmann::ordered_json& context, bool asJson);

}  // namespace zelnor::bench
