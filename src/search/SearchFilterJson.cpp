#include "search/SearchFilterJson.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

#include "search/DateJson.h"
#include "search/IntegerJson.h"

namespace zelnor {

namespace {

using Json = nlohmann::ordered_json;

template <class Enum>
Enum requiredCase(const Json& object, const char* key) {
  const auto found = fromRawValue<Enum>(object.at(key).get_ref<const std::string&>());
  if (!found) throw std::invalid_argument(std::string("unknown value of ") + key);
  return *found;
}

void read(const Json& json, std::int64_t& number) { number = integerFrom(json); }
void read(const Json& json, Date& date) { from_json(json, date); }

template <class Value>
void readOptional(const Json& object, const char* key, std::optional<Value>& value) {
  const auto found = object.find(key);
  if (found == object.end() || found->is_null()) return value.reset();
  read(*found, value.emplace());
}

template <class Value>
void writeOptional(Json& object, const char* key, const std::optional<Value>& value) {
  if (value) object[key] = *value;
}

}  // namespace

void to_json(Json& json, const SearchFilter& filter) {
  json = Json::object();
  json["category"] = rawValue(filter.category);
  json["sizePreset"] = rawValue(filter.sizePreset);
  json["datePreset"] = rawValue(filter.datePreset);
  writeOptional(json, "customMinSize", filter.customMinSize);
  writeOptional(json, "customMaxSize", filter.customMaxSize);
  writeOptional(json, "customFromDate", filter.customFromDate);
  writeOptional(json, "customToDate", filter.customToDate);
}

void from_json(const Json& json, SearchFilter& filter) {
  filter.category = requiredCase<FileTypeCategory>(json, "category");
  filter.sizePreset = requiredCase<SizePreset>(json, "sizePreset");
  filter.datePreset = requiredCase<DatePreset>(json, "datePreset");
  readOptional(json, "customMinSize", filter.customMinSize);
  readOptional(json, "customMaxSize", filter.customMaxSize);
  readOptional(json, "customFromDate", filter.customFromDate);
  readOptional(json, "customToDate", filter.customToDate);
}

}  // namespace zelnor
