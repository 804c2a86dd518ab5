#include "indexer/IndexConfiguration.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include <nlohmann/json.hpp>

#include "platform/StringJson.h"

namespace zelnor {

namespace {

using Json = nlohmann::ordered_json;
using Bytes = platform::DefaultsStore::Bytes;

constexpr std::string_view kDefaultsKey = "IndexConfiguration";

Bytes encode(const IndexConfiguration& configuration) {
  const Json json = {{"includedPaths", platform::jsonFromStrings(configuration.includedPaths)},
                     {"excludedPaths", platform::jsonFromStrings(configuration.excludedPaths)},
                     {"skipHiddenFiles", configuration.skipHiddenFiles},
                     {"skipPackageContents", configuration.skipPackageContents},
                     {"skipSymlinks", configuration.skipSymlinks}};
  const auto text = json.dump();
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

/// Nothing if a key is missing or of another type.
std::optional<IndexConfiguration> decode(const Bytes& bytes) try {
  const auto* const text = reinterpret_cast<const char*>(bytes.data());
  const auto json = Json::parse(text, text + bytes.size());
  auto included = platform::stringsFromJson(json.at("includedPaths"));
  auto excluded = platform::stringsFromJson(json.at("excludedPaths"));
  if (!included || !excluded) return std::nullopt;
  IndexConfiguration configuration;
  configuration.includedPaths = std::move(*included);
  configuration.excludedPaths = std::move(*excluded);
  json.at("skipHiddenFiles").get_to(configuration.skipHiddenFiles);
  json.at("skipPackageContents").get_to(configuration.skipPackageContents);
  json.at("skipSymlinks").get_to(configuration.skipSymlinks);
  return configuration;
} catch (const Json::exception&) {
  return std::nullopt;
}

}  // namespace

IndexConfiguration IndexConfiguration::defaults(std::string homeFolder) {
  IndexConfiguration configuration;
  configuration.includedPaths.push_back(std::move(homeFolder));
  return configuration;
}

std::optional<IndexConfiguration> IndexConfiguration::saved(const platform::DefaultsStore& store) {
  const auto bytes = store.get<Bytes>(kDefaultsKey);
  return bytes ? decode(*bytes) : std::nullopt;
}

IndexConfiguration IndexConfiguration::load(const platform::DefaultsStore& store,
                                            std::string homeFolder) {
  auto configuration = saved(store);
  return configuration ? std::move(*configuration) : defaults(std::move(homeFolder));
}

void IndexConfiguration::save(platform::DefaultsStore& store) const {
  store.set(kDefaultsKey, encode(*this));
}

bool IndexConfiguration::shouldExclude(std::string_view path) const {
  return std::ranges::any_of(
      excludedPaths, [path](const std::string& prefix) { return path.starts_with(prefix); });
}

}  // namespace zelnor
