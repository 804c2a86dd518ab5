#include "bench/Figures.h"

#include <cmath>

#include "bench/Table.h"

namespace zelnor::bench {
namespace {

std::string shown(const std::optional<double>& value) {
  if (!value) return "never";
  const bool isWhole = std::trunc(*value) == *value;
  return fixed(*value, isWhole ? 0 : 3);
}

}  // namespace

void to_json(nlohmann::ordered_json& json, const Figure& figure) {
  json = {{"name", figure.name}, {"unit", figure.unit}, {"value", nullptr}};
  if (figure.value) json["value"] = *figure.value;
}

void from_json(const nlohmann::ordered_json& json, Figure& figure) {
  json.at("name").get_to(figure.name);
  json.at("unit").get_to(figure.unit);
  const auto& value = json.at("value");
  figure.value = value.is_null() ? std::nullopt : std::optional(value.get<double>());
}

std::string text(const Figures& figures, const nlohmann::ordered_json& context, bool asJson) {
  if (asJson) {
    auto json = context;
    json["figures"] = figures;
    return json.dump(/*indent=*/2, ' ', /*ensure_ascii=*/false,
                     nlohmann::ordered_json::error_handler_t::replace) +
           "\n";
  }
  Table table({"", "value", "unit"});
  for (const auto& figure : figures) {
    table.add({figure.name, shown(figure.value), figure.unit});
  }
  return table.text();
}

}  // namespace zelnor::bench
