#pragma once

#include <optional>

#include <nlohmann/json.hpp>

#include "platform/DefaultsStore.h"

// How the values of a defaults store look in JSON: Booleans, numbers, strings and lists of strings
// as themselves, bytes as {"base64": "…"}, and a string that JSON cannot hold, because it is not
// UTF-8, as {"stringBytes": "…"}, in Base64 too.

namespace zelnor::platform {

nlohmann::ordered_json toJson(const DefaultsStore::Value& value);

/// Nothing for what is no value of a defaults store.
std::optional<DefaultsStore::Value> valueFromJson(const nlohmann::ordered_json& json);

}  // namespace zelnor::platform
