#include "indexer/IndexConfiguration.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include <nlohmann/json.hpp>

namespace zelnor {

namespace {

using Json = nlohmann::ordered_json;
using Bytes = platform::DefaultsStore::Bytes;

constexpr std::string_view kDefaultsKey = "IndexConfiguration";

/// Nothing if JSON cannot hold it.
std::optional<Bytes> encode(const IndexConfiguration& configuration) try {
  const Json json = {{"includedPaths", configuration.includedPaths},
                     {"excludedPaths", configuration.excludedPaths},
                     {"skipHiddenFiles", configuration.skipHiddenFiles},
                     {"skipPackageContents", configuration.skipPackageContents},
                     {"skipSymlinks", configuration.skipSymlinks}};
  const auto text = json.dump();
  const auto bytes = std::as_bytes(std::span(text));
  return Bytes(bytes.begin(), bytes.end());
} catch (const Json::exception&) {
  return std::nullopt;
}

/// Nothing if a key is missing or of another type.
std::optional<IndexConfiguration> decode(const Bytes& bytes) try {
  const auto* const text = reinterpret_cast<const char*>(bytes.data());
  const auto json = Json::parse(text, text + bytes.size());
  IndexConfiguration configuration;
  json.at("includedPaths").get_to(configuration.includedPaths);
  json.at("excludedPaths").get_to(configuration.excludedPaths);
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
  if (auto bytes = encode(*this)) store.set(kDefaultsKey, std::move(*bytes));
}

bool IndexConfiguration::shouldExclude(std::string_view path) const {
  return std::ranges::any_of(
      excludedPaths, [path](const std::string& prefix) { return path.starts_with(prefix); });
}

}  // namespace zelnor
