#include <span>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "indexer/IndexConfiguration.h"
#include "indexer/IndexStatus.h"
#include "tests/support/MemoryDefaultsStore.h"

namespace zelnor {
namespace {

using testing::ElementsAre;
using Bytes = platform::DefaultsStore::Bytes;

constexpr const char* kKey = "IndexConfiguration";
constexpr const char* kHome = "/home/u";

Bytes bytesOf(const std::string& text) {
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

TEST(IndexConfiguration, NothingStoredLoadsTheDefaults) {
  const test::MemoryDefaultsStore store;
  const auto configuration = IndexConfiguration::load(store, kHome);
  EXPECT_THAT(configuration.includedPaths, ElementsAre(kHome));
  EXPECT_THAT(configuration.excludedPaths,
              ElementsAre("/System", "/private/var", "/private/tmp", "/dev", "/cores",
                          "/Volumes/.com.apple.TimeMachine.localsnapshots"));
  EXPECT_FALSE(configuration.skipHiddenFiles);
  EXPECT_TRUE(configuration.skipPackageContents);
  EXPECT_FALSE(configuration.skipSymlinks);
}

TEST(IndexConfiguration, IsStoredAsJsonOfFiveKeys) {
  test::MemoryDefaultsStore store;
  const IndexConfiguration configuration{.includedPaths = {"/a \"b\"", "/中"},
                                         .excludedPaths = {},
                                         .skipHiddenFiles = true,
                                         .skipPackageContents = false,
                                         .skipSymlinks = true};
  configuration.save(store);
  EXPECT_EQ(
      store.get<Bytes>(kKey),
      bytesOf(R"({"includedPaths":["/a \"b\"","/中"],"excludedPaths":[],"skipHiddenFiles":true,)"
              R"("skipPackageContents":false,"skipSymlinks":true})"));
  EXPECT_EQ(IndexConfiguration::load(store, kHome), configuration);
}

TEST(IndexConfiguration, WhatIsIncompleteOrDamagedLoadsAsTheDefaults) {
  const auto object = [](const std::string& included, const std::string& rest) {
    return R"({"includedPaths":)" + included + R"(,"excludedPaths":[],"skipHiddenFiles":true)" +
           rest + "}";
  };
  for (const auto& text :
       {object(R"(["/a"])", R"(,"skipPackageContents":false)"),
        object(R"(["/a"])", R"(,"skipPackageContents":false,"skipSymlinks":1)"),
        object(R"(["/a"])", R"(,"skipPackageContents":null,"skipSymlinks":true)"),
        object(R"([{"stringBytes":1}])", R"(,"skipPackageContents":false,"skipSymlinks":true)"),
        object(R"({"stringBytes":"L/8="})", R"(,"skipPackageContents":false,"skipSymlinks":true)"),
        object(R"([1])", R"(,"skipPackageContents":false,"skipSymlinks":true)"),
        object(R"("/a")", R"(,"skipPackageContents":false,"skipSymlinks":true)"), std::string("[]"),
        std::string("{"), std::string()}) {
    test::MemoryDefaultsStore store;
    store.set(kKey, bytesOf(text));
    EXPECT_EQ(IndexConfiguration::load(store, kHome), IndexConfiguration::defaults(kHome)) << text;
  }
  test::MemoryDefaultsStore store;
  store.set(kKey, std::string("text"));
  EXPECT_EQ(IndexConfiguration::load(store, kHome), IndexConfiguration::defaults(kHome));
}

TEST(IndexConfiguration, PathsThatAreNotUtf8AreStoredBesideThoseThatAre) {
  test::MemoryDefaultsStore store;
  IndexConfiguration configuration{.includedPaths = {"/\xff", "/中", "/caf\xE9/\xED\xA0\x80"},
                                   .excludedPaths = {"/a", "/\xC0\x80"}};
  configuration.save(store);
  EXPECT_EQ(IndexConfiguration::load(store, kHome), configuration);
  EXPECT_EQ(store.get<Bytes>(kKey),
            bytesOf(R"({"includedPaths":[{"stringBytes":"L/8="},"/中",)"
                    R"({"stringBytes":"L2NhZukv7aCA"}],)"
                    R"("excludedPaths":["/a",{"stringBytes":"L8CA"}],"skipHiddenFiles":false,)"
                    R"("skipPackageContents":true,"skipSymlinks":false})"));
}

TEST(IndexConfiguration, ExcludesByPlainPrefix) {
  auto configuration = IndexConfiguration::defaults(kHome);
  for (const auto* path : {"/private/var/log", "/private/varx", "/devices", "/dev"})
    EXPECT_TRUE(configuration.shouldExclude(path)) << path;
  for (const auto* path : {"/private/etc", "/home/dev", "/de", ""})
    EXPECT_FALSE(configuration.shouldExclude(path)) << path;
  configuration.excludedPaths.clear();
  EXPECT_FALSE(configuration.shouldExclude("/dev"));
}

TEST(IndexStatus, StartsIdleAndEmpty) {
  const IndexStatus status;
  EXPECT_EQ(status.state, IndexStatus::State::idle());
  EXPECT_EQ(status.totalFiles, 0);
  EXPECT_EQ(status.processedFiles, 0);
  EXPECT_FALSE(status.lastIndexDate);
}

}  // namespace
}  // namespace zelnor
