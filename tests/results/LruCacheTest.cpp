#include <string>

#include <gtest/gtest.h>

#include "results/LruCache.h"

namespace zelnor {
namespace {

TEST(LruCache, KeepsWhatWasAskedForLastWithinItsLimit) {
  LruCache<int> cache(/*limit=*/10);
  cache.insert("a", 1, 4);
  cache.insert("b", 2, 4);
  ASSERT_NE(cache.find("a"), nullptr);
  cache.insert("c", 3, 4);
  EXPECT_EQ(cache.find("b"), nullptr);
  EXPECT_EQ(*cache.find("a"), 1);
  cache.insert("a", 5, 6);
  EXPECT_EQ(*cache.find("a"), 5);
  EXPECT_EQ(*cache.find("c"), 3);
  cache.insert("huge", 9, 11);
  for (const auto* key : {"a", "c", "huge"}) EXPECT_EQ(cache.find(key), nullptr) << key;
  cache.insert("d", 4, 10);
  EXPECT_EQ(*cache.find("d"), 4);
}

}  // namespace
}  // namespace zelnor
