#include "platform/linux/DefaultsJson.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <glib.h>

namespace zelnor::platform {

namespace {

using Json = nlohmann::ordered_json;
using Value = DefaultsStore::Value;

constexpr const char* kBytesTag = "base64";
constexpr const char* kStringTag = "stringBytes";

struct GFree {
  void operator()(void* memory) const { g_free(memory); }
};

Json tagged(const char* tag, const void* data, std::size_t size) {
  const std::unique_ptr<gchar, GFree> text(g_base64_encode(static_cast<const guchar*>(data), size));
  return {{tag, text.get()}};
}

/// The content of `{tag: "…"}`, as a container of bytes; nothing if `json` is something else.
template <class Container>
std::optional<Container> untagged(const char* tag, const Json& json) {
  if (!json.is_object() || json.size() != 1 || !json.contains(tag) || !json[tag].is_string()) {
    return std::nullopt;
  }
  gsize size = 0;
  const std::unique_ptr<guchar, GFree> data(
      g_base64_decode(json[tag].get_ref<const std::string&>().c_str(), &size));
  Container content(size, {});
  if (size > 0) std::memcpy(content.data(), data.get(), size);
  return content;
}

Json toJson(const std::string& text) {
  const bool isUtf8 = g_utf8_validate_len(text.data(), text.size(), /*end=*/nullptr) != FALSE;
  return isUtf8 ? Json(text) : tagged(kStringTag, text.data(), text.size());
}

Json toJson(const std::vector<std::string>& texts) {
  auto json = Json::array();
  for (const auto& text : texts) json.push_back(toJson(text));
  return json;
}

Json toJson(const DefaultsStore::Bytes& bytes) {
  return tagged(kBytesTag, bytes.data(), bytes.size());
}

Json toJson(bool flag) { return flag; }
Json toJson(std::uint64_t number) { return number; }

std::optional<std::string> stringFrom(const Json& json) {
  return json.is_string() ? json.get<std::string>() : untagged<std::string>(kStringTag, json);
}

std::optional<Value> listFrom(const Json& json) {
  std::vector<std::string> texts;
  for (const auto& element : json) {
    auto text = stringFrom(element);
    if (!text) return std::nullopt;
    texts.push_back(std::move(*text));
  }
  return texts;
}

}  // namespace

nlohmann::ordered_json toJson(const Value& value) {
  return std::visit([](const auto& typed) { return toJson(typed); }, value);
}

std::optional<Value> valueFromJson(const Json& json) {
  if (json.is_boolean()) return json.get<bool>();
  if (json.is_number_unsigned()) return json.get<std::uint64_t>();
  if (json.is_array()) return listFrom(json);
  if (auto bytes = untagged<DefaultsStore::Bytes>(kBytesTag, json)) return bytes;
  return stringFrom(json);
}

}  // namespace zelnor::platform
