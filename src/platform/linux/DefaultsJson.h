#pragma once

#include <optional>

#include <nlohmann/json.hpp>

#include "platform/DefaultsStore.h"

// How the values of a defaults store look in JSON: Booleans and numbers as themselves, strings and
// lists of strings as platform/StringJson.h says, bytes as {"base64": "…"}.

namespace zelnor::platform {

nlohmann::ordered_json toJson(const DefaultsStore::Value& value);

/// Nothing for what is no value of a defaults store.
std::optional<DefaultsStore::Value> valueFromJson(const nlohmann::ordered_json& json);

}  // namespace zelnor::platform
