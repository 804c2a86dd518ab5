#include "platform/linux/DefaultsJson.h"

#include <string>
#include <vector>

#include "platform/StringJson.h"

namespace zelnor::platform {

namespace {

using Json = nlohmann::ordered_json;
using Value = DefaultsStore::Value;

constexpr const char* kBytesTag = "base64";

Json jsonOf(const std::string& text) { return jsonFromString(text); }
Json jsonOf(const std::vector<std::string>& texts) { return jsonFromStrings(texts); }
Json jsonOf(const DefaultsStore::Bytes& bytes) { return jsonFromBytes(kBytesTag, bytes); }
Json jsonOf(bool flag) { return flag; }
Json jsonOf(std::uint64_t number) { return number; }

}  // namespace

nlohmann::ordered_json toJson(const Value& value) {
  return std::visit([](const auto& typed) { return jsonOf(typed); }, value);
}

std::optional<Value> valueFromJson(const Json& json) {
  if (json.is_boolean()) return json.get<bool>();
  if (json.is_number_unsigned()) return json.get<std::uint64_t>();
  if (json.is_array()) return stringsFromJson(json);
  if (auto bytes = bytesFromJson(kBytesTag, json)) return bytes;
  return stringFromJson(json);
}

}  // namespace zelnor::platform
