#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "indexer/FSEventsMonitor.h"

namespace zelnor {
namespace {

using namespace platform;
using EventType = FSEventItem::EventType;

constexpr auto kCreated = kFSEventStreamEventFlagItemCreated;
constexpr auto kRemoved = kFSEventStreamEventFlagItemRemoved;
constexpr auto kRenamed = kFSEventStreamEventFlagItemRenamed;
constexpr auto kModified = kFSEventStreamEventFlagItemModified;

TEST(FSEventsTranslation, TakesTheTypeFromTheStrongestFlag) {
  const std::vector<std::pair<std::uint32_t, EventType>> cases{
      {kCreated | kRemoved, EventType::created},
      {kRemoved | kRenamed, EventType::removed},
      {kRenamed | kModified, EventType::renamed},
      {kModified, EventType::modified},
      {kFSEventStreamEventFlagItemInodeMetaMod, EventType::modified},
      {0, EventType::modified}};
  for (const auto& [flags, type] : cases) {
    const ChangeEvent event{.path = "/p", .flags = flags, .identifier = 1};
    const auto items = translate(std::span(&event, 1)).items;
    EXPECT_THAT(items, testing::ElementsAre(FSEventItem{"/p", type, flags})) << flags;
  }
}

TEST(FSEventsTranslation, ReportsTheLargestIdentifierAndItemsInOrder) {
  const std::vector<ChangeEvent> events{{"/b", kCreated, 7}, {"/a", kRemoved, 9}, {"/c", 0, 8}};
  const auto translation = translate(events);
  EXPECT_EQ(translation.latestEventID, 9U);
  ASSERT_EQ(translation.items.size(), 3);
  EXPECT_EQ(translation.items[0].path, "/b");
  EXPECT_EQ(translation.items[2].path, "/c");
  EXPECT_EQ(translate({}).latestEventID, std::nullopt);
}

TEST(FSEventsTranslation, AnyLossDiscardsTheBatchForOneRescanRequest) {
  const std::vector<std::pair<std::uint32_t, std::string>> cases{
      {0x01 | 0x02 | 0x04, "FSEvents requested a full subtree scan"},
      {0x04 | 0x02, "FSEvents kernel queue dropped events"},
      {0x02 | 0x20, "FSEvents user queue dropped events"},
      {0x20, "FSEvents detected a root path change"}};
  for (const auto& [flags, reason] : cases) {
    const std::vector<ChangeEvent> events{
        {"/a", kCreated, 1}, {"/b", kRemoved, 2}, {"/r", flags, 3}, {"/s", 0x20, 4}};
    const auto translation = translate(events);
    EXPECT_TRUE(translation.items.empty());
    EXPECT_EQ(translation.latestEventID, std::nullopt);
    EXPECT_EQ(translation.rescan, (FSEventRescanRequest{reason, flags}));
  }
}

/// A stream that delivers what it is told of, and "/a" when it is started.
class FakeStream final : public ChangeStream {
 public:
  FakeStream(Callback callback, bool starts) : callback_(std::move(callback)), starts_(starts) {}
  void setQueue(SerialQueue* queue) override { queue_ = queue; }
  bool listen() override { return starts_; }
  void willList(const std::string& folder) override { callback_(eventOf(folder)); }
  void couldNotList(const std::string& folder) override { callback_(eventOf(folder)); }
  void foundName(const std::string& path, std::uint64_t /*inode*/) override {
    callback_(eventOf(path));
  }
  bool start() override {
    if (starts_) queue_->post([report = callback_] { report(eventOf("/a")); });
    return starts_;
  }
  void stop() override {
    if (queue_ != nullptr) queue_->waitForRunning();
  }
  void invalidate() override { queue_ = nullptr; }

 private:
  static std::vector<ChangeEvent> eventOf(const std::string& path) { return {{path, kCreated, 5}}; }

  Callback callback_;
  bool starts_;
  SerialQueue* queue_ = nullptr;
};

TEST(FSEventsMonitor, ReportsTheIdentifierBeforeTheItems) {
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<std::string> calls;
  const auto note = [&](std::string call) {
    const std::scoped_lock lock(mutex);
    calls.push_back(std::move(call));
    changed.notify_all();
  };
  FSEventsMonitor monitor(
      0.5, [&](const auto& items) { note("items " + items.at(0).path); },
      [](const auto&, auto, auto, auto flags, auto callback) {
        EXPECT_EQ(flags, 0x13U);
        return std::make_unique<FakeStream>(std::move(callback), /*starts=*/true);
      });
  monitor.onLatestEventID = [&](auto identifier) { note("id " + std::to_string(identifier)); };
  monitor.start({"/r"}, kFSEventStreamEventIdSinceNow);
  std::unique_lock lock(mutex);
  EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(10), [&] { return calls.size() == 2; }));
  EXPECT_THAT(calls, testing::ElementsAre("id 5", "items /a"));
}

TEST(FSEventsMonitor, StaysStoppedWithoutPathsOrAStreamAndStartsOnce) {
  int created = 0;
  bool starts = false;
  bool exists = true;
  FSEventsMonitor monitor(
      0.5, [](const auto&) {},
      [&](const auto&, auto, auto, auto, auto callback) -> std::unique_ptr<ChangeStream> {
        ++created;
        return exists ? std::make_unique<FakeStream>(std::move(callback), starts) : nullptr;
      });
  monitor.start({}, 1);
  EXPECT_EQ(created, 0);
  monitor.start({"/r"}, 1);
  EXPECT_FALSE(monitor.isRunning());
  exists = false;
  monitor.start({"/r"}, 1);
  EXPECT_FALSE(monitor.isRunning());
  exists = starts = true;
  monitor.start({"/r"}, 1);
  monitor.start({"/r"}, 1);
  EXPECT_TRUE(monitor.isRunning());
  EXPECT_EQ(created, 3);
  monitor.stop();
  EXPECT_FALSE(monitor.isRunning());
  monitor.start({"/r"}, 1);
  EXPECT_TRUE(monitor.isRunning());
}

TEST(FSEventsMonitor, PassesOnWhatAWalkTellsOnlyWhileItListens) {
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<std::string> items;
  bool starts = false;
  FSEventsMonitor monitor(
      0.5,
      [&](const std::vector<FSEventItem>& list) {
        const std::scoped_lock lock(mutex);
        for (const auto& item : list) items.push_back(item.path);
        changed.notify_all();
      },
      [&](const auto&, auto, auto, auto, auto callback) {
        return std::make_unique<FakeStream>(std::move(callback), starts);
      });
  const auto tell = [&monitor](const std::string& when) {
    monitor.willList("/" + when);
    monitor.couldNotList("/not " + when);
    monitor.foundName("/named " + when, 1);
  };
  EXPECT_FALSE(monitor.listen({}, 1));
  EXPECT_FALSE(monitor.listen({"/r"}, 1)) << "the stream does not";
  tell("stopped");
  starts = true;
  EXPECT_TRUE(monitor.listen({"/r"}, 1));
  EXPECT_FALSE(monitor.listen({"/r"}, 1));
  EXPECT_FALSE(monitor.isRunning());
  tell("listening");
  monitor.start({"/r"}, 1);
  EXPECT_TRUE(monitor.isRunning());
  tell("running");
  {
    std::unique_lock lock(mutex);
    ASSERT_TRUE(changed.wait_for(lock, std::chrono::seconds(20), [&] { return items.size() > 3; }));
    EXPECT_THAT(items,
                testing::ElementsAre("/listening", "/not listening", "/named listening", "/a"));
  }
  monitor.stop();
  EXPECT_TRUE(monitor.listen({"/r"}, 1));
  monitor.stop();
  tell("stopped");
  EXPECT_FALSE(monitor.isRunning());
  EXPECT_EQ(items.size(), 4);
}

}  // namespace
}  // namespace zelnor
