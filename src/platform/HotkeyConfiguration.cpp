#include "platform/HotkeyConfiguration.h"

#include <array>
#include <cctype>
#include <optional>
#include <span>
#include <string_view>

#include <nlohmann/json.hpp>

#include "platform/KeyCodes.h"

namespace zelnor::platform {

namespace {

using Json = nlohmann::ordered_json;
using Bytes = DefaultsStore::Bytes;

constexpr std::string_view kDefaultsKey = "HotkeyConfiguration";

std::optional<std::uint32_t> numberAt(const Json& json, const char* key) {
  const auto found = json.find(key);
  if (found == json.end() || !found->is_number_unsigned()) return std::nullopt;
  const auto number = found->get<std::uint64_t>();
  if (number > UINT32_MAX) return std::nullopt;
  return static_cast<std::uint32_t>(number);
}

std::optional<HotkeyConfiguration> decode(const Bytes& bytes) {
  const auto* const text = reinterpret_cast<const char*>(bytes.data());
  const auto json = Json::parse(text, text + bytes.size(), /*cb=*/nullptr,
                                /*allow_exceptions=*/false);
  if (!json.is_object()) return std::nullopt;
  const auto keyCode = numberAt(json, "keyCode");
  const auto modifiers = numberAt(json, "modifiers");
  if (!keyCode || !modifiers) return std::nullopt;
  return HotkeyConfiguration{.keyCode = *keyCode, .modifiers = *modifiers};
}

std::string keyName(std::uint32_t keyCode) {
  switch (keyCode) {
    case 36:
      return "Return";
    case 48:
      return "Tab";
    case 49:
      return "Space";
    case 51:
      return "Delete";
    default:
      break;
  }
  if (const auto character = characterAt(keyCode)) {
    return {static_cast<char>(std::toupper(static_cast<unsigned char>(*character)))};
  }
  return "K" + std::to_string(keyCode);
}

}  // namespace

HotkeyConfiguration HotkeyConfiguration::load(const DefaultsStore& defaults) {
  const auto bytes = defaults.get<Bytes>(kDefaultsKey);
  return (bytes ? decode(*bytes) : std::nullopt).value_or(HotkeyConfiguration{});
}

void HotkeyConfiguration::save(DefaultsStore& defaults) const {
  const auto text = Json({{"keyCode", keyCode}, {"modifiers", modifiers}}).dump();
  const auto bytes = std::as_bytes(std::span(text));
  defaults.set(kDefaultsKey, Bytes(bytes.begin(), bytes.end()));
}

std::string HotkeyConfiguration::displayString() const {
  struct Symbol {
    std::uint32_t bit;
    std::string_view text;
  };
  static constexpr std::array kSymbols{Symbol{kControl, "⌃"}, Symbol{kOption, "⌥"},
                                       Symbol{kCommand, "⌘"}, Symbol{kShift, "⇧"}};
  std::string text;
  for (const auto& symbol : kSymbols) {
    if ((modifiers & symbol.bit) != 0) text += symbol.text;
  }
  return text + keyName(keyCode);
}

}  // namespace zelnor::platform
