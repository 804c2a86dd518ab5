#include "indexer/IndexConfiguration.h"

#include <algorithm>
#include <span>
#include <utility>

#include <nlohmann/json.hpp>

namespace zelnor {

namespace {

using Json = nlohmann::ordered_json;
using Bytes = platform::DefaultsStore::Bytes;

constexpr std::string_view kDefaultsKey = "IndexConfiguration";

Bytes encode(const IndexConfiguration& configuration) {
  const Json json = {{"includedPaths", configuration.includedPaths},
                     {"excludedPaths", configuration.excludedPaths},
                     {"skipHiddenFiles", configuration.skipHiddenFiles},
                     {"skipPackageContents", configuration.skipPackageContents},
                     {"skipSymlinks", configuration.skipSymlinks}};
  const auto text = json.dump();
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

/// Throws Json::exception if a key is missing or of another type.
IndexConfiguration decode(const Bytes& bytes) {
  const auto* const text = reinterpret_cast<const char*>(bytes.data());
  const auto json = Json::parse(text, text + bytes.size());
  IndexConfiguration configuration;
  json.at("includedPaths").get_to(configuration.includedPaths);
  json.at("excludedPaths").get_to(configuration.excludedPaths);
  json.at("skipHiddenFiles").get_to(configuration.skipHiddenFiles);
  json.at("skipPackageContents").get_to(configuration.skipPackageContents);
  json.at("skipSymlinks").get_to(configuration.skipSymlinks);
  return configuration;
}

}  // namespace

IndexConfiguration IndexConfiguration::defaults(std::string homeFolder) {
  IndexConfiguration configuration;
  configuration.includedPaths.push_back(std::move(homeFolder));
  return configuration;
}

IndexConfiguration IndexConfiguration::load(const platform::DefaultsStore& store,
                                            std::string homeFolder) {
  try {
    if (const auto bytes = store.get<Bytes>(kDefaultsKey)) return decode(*bytes);
  } catch (const Json::exception&) {
    // Damaged, or of another version: as good as nothing.
  }
  return defaults(std::move(homeFolder));
}

void IndexConfiguration::save(platform::DefaultsStore& store) const {
  try {
    store.set(kDefaultsKey, encode(*this));
  } catch (const Json::exception&) {
    // What was saved before stays.
  }
}

bool IndexConfiguration::shouldExclude(std::string_view path) const {
  return std::ranges::any_of(
      excludedPaths, [path](const std::string& prefix) { return path.starts_with(prefix); });
}

}  // namespace zelnor
