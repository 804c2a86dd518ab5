#include <gtest/gtest.h>

#include "platform/linux/changes/EventCoalescer.h"

namespace zelnor::platform {
namespace {

TEST(EventCoalescer, KeepsOneChangePerPathInTheOrderOfFirstArrival) {
  EventCoalescer pending;
  pending.add("/b", 1);
  pending.add("/a", 2);
  pending.add("/b", 4);
  const auto taken = pending.take(10);
  ASSERT_EQ(taken.size(), 2);
  EXPECT_EQ(taken[0].path, "/b");
  EXPECT_EQ(taken[0].flags, 5U);
  EXPECT_EQ(taken[1].path, "/a");
  EXPECT_TRUE(pending.empty());
}

TEST(EventCoalescer, WhatIsTakenIsForgottenAndTheRestStays) {
  EventCoalescer pending;
  for (const char* path : {"/a", "/b", "/c"}) pending.add(path, 1);
  EXPECT_EQ(pending.take(2).size(), 2);
  pending.add("/a", 8);
  const auto rest = pending.take(10);
  ASSERT_EQ(rest.size(), 2);
  EXPECT_EQ(rest[0].path, "/c");
  EXPECT_EQ(rest[1].path, "/a");
  EXPECT_EQ(rest[1].flags, 8U);
}

}  // namespace
}  // namespace zelnor::platform
