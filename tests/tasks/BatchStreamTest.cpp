#include <thread>

#include <gtest/gtest.h>

#include "tasks/BatchStream.h"
#include "tests/support/MainThread.h"

namespace zelnor::tasks {
namespace {

TEST(BatchStream, KeepsTheNewestBatchesAndCountsTheOthers) {
  BatchStream<int> stream(4);
  test::MainThread main;
  for (int i = 1; i <= 6; ++i) stream.push({i});
  stream.finish();
  EXPECT_EQ(stream.discarded(), 2U);
  for (int i = 3; i <= 6; ++i) EXPECT_EQ(main.await(stream.next()), std::vector{i});
  EXPECT_FALSE(main.await(stream.next()));
  EXPECT_FALSE(main.await(stream.next()));
}

TEST(BatchStream, WakesAConsumerThatWaits) {
  constexpr int kBatches = 2000;
  BatchStream<int> stream(kBatches);
  test::MainThread main;
  const std::jthread producer([&] {
    for (int i = 0; i < kBatches; ++i) stream.push({i});
    stream.finish();
  });
  int expected = 0;
  main.await([&]() -> Async<void> {
    while (const auto batch = co_await stream.next()) EXPECT_EQ(batch->at(0), expected++);
  }());
  EXPECT_EQ(expected, kBatches);
  EXPECT_EQ(stream.discarded(), 0U);
}

}  // namespace
}  // namespace zelnor::tasks
