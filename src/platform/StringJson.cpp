#include "platform/StringJson.h"

#include <memory>
#include <utility>

#include <glib.h>

namespace zelnor::platform {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kStringTag = "stringBytes";

struct GFree {
  void operator()(void* memory) const { g_free(memory); }
};

}  // namespace

Json jsonFromString(const std::string& bytes) {
  const bool isUtf8 = g_utf8_validate_len(bytes.data(), bytes.size(), /*end=*/nullptr) != FALSE;
  return isUtf8 ? Json(bytes) : jsonFromBytes(kStringTag, std::as_bytes(std::span(bytes)));
}

std::optional<std::string> stringFromJson(const Json& json) {
  if (json.is_string()) return json.get<std::string>();
  const auto bytes = bytesFromJson(kStringTag, json);
  if (!bytes) return std::nullopt;
  return std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size());
}

Json jsonFromStrings(const std::vector<std::string>& strings) {
  auto json = Json::array();
  for (const auto& string : strings) json.push_back(jsonFromString(string));
  return json;
}

std::optional<std::vector<std::string>> stringsFromJson(const Json& json) {
  if (!json.is_array()) return std::nullopt;
  std::vector<std::string> strings;
  for (const auto& element : json) {
    auto string = stringFromJson(element);
    if (!string) return std::nullopt;
    strings.push_back(std::move(*string));
  }
  return strings;
}

Json jsonFromBytes(const char* tag, std::span<const std::byte> bytes) {
  const std::unique_ptr<gchar, GFree> text(
      g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size()));
  return {{tag, text.get()}};
}

std::optional<std::vector<std::byte>> bytesFromJson(const char* tag, const Json& json) {
  if (!json.is_object() || json.size() != 1 || !json.contains(tag) || !json[tag].is_string()) {
    return std::nullopt;
  }
  gsize size = 0;
  const std::unique_ptr<guchar, GFree> data(
      g_base64_decode(json[tag].get_ref<const std::string&>().c_str(), &size));
  const auto bytes = std::as_bytes(std::span(data.get(), size));
  return std::vector(bytes.begin(), bytes.end());
}

}  // namespace zelnor::platform
