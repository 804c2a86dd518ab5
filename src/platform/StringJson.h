#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

// How bytes look in JSON, which holds nothing but UTF-8: a string as itself, or, where it is not
// UTF-8, as {"stringBytes": "…"} in Base64. Reading answers nothing for anything else.

namespace zelnor::platform {

nlohmann::ordered_json jsonFromString(const std::string& bytes);
std::optional<std::string> stringFromJson(const nlohmann::ordered_json& json);

/// An array of such strings.
nlohmann::ordered_json jsonFromStrings(const std::vector<std::string>& strings);
std::optional<std::vector<std::string>> stringsFromJson(const nlohmann::ordered_json& json);

/// `{tag: "…"}`, bytes in Base64 under a name that says what they are.
nlohmann::ordered_json jsonFromBytes(const char* tag, std::span<const std::byte> bytes);
std::optional<std::vector<std::byte>> bytesFromJson(const char* tag,
                                                    const nlohmann::ordered_json& json);

}  // namespace zelnor::platform
