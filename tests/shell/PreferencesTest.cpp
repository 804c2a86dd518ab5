#include <string>

#include <gtest/gtest.h>

#include "shell/Preferences.h"
#include "tasks/ThreadPool.h"
#include "tests/support/MainThread.h"
#include "tests/support/MemoryDefaultsStore.h"

namespace zelnor {
namespace {

using platform::HotkeyConfiguration;

void storeAll(Preferences& preferences, test::MainThread& main) {
  bool isStored = false;
  preferences.stop([&] { isStored = true; });
  main.runUntil([&] { return isStored; });
}

/// Keeps nothing that it is given.
class FullStore final : public platform::DefaultsStore {
 public:
  std::optional<Value> value(std::string_view /*key*/) const override { return std::nullopt; }
  void set(std::string_view /*key*/, Value /*value*/) override {}
  void remove(std::string_view /*key*/) override {}
};

TEST(Preferences, AreThereAgainAfterARestartAsTheyWereSetLast) {
  test::MemoryDefaultsStore store;
  test::MainThread main;
  const HotkeyConfiguration hotkey{.keyCode = 40, .modifiers = 2304};
  {
    tasks::ThreadPool pool(2);
    Preferences preferences(store, main.executor(), pool.executor());
    EXPECT_EQ(preferences.hotkey(), HotkeyConfiguration());
    EXPECT_FALSE(preferences.autoCloseOnFocusLoss());
    EXPECT_FALSE(preferences.permissionGuideShown());
    EXPECT_FALSE(preferences.searchWindowFrame());
    preferences.setHotkey(hotkey);
    preferences.setPermissionGuideShown();
    for (int turn = 0; turn < 100; ++turn) {
      preferences.setAutoCloseOnFocusLoss(turn % 2 == 1);
      preferences.setSearchWindowFrame(std::to_string(turn));
    }
    EXPECT_TRUE(preferences.autoCloseOnFocusLoss());
    storeAll(preferences, main);
  }
  tasks::ThreadPool pool(1);
  const Preferences preferences(store, main.executor(), pool.executor());
  EXPECT_EQ(preferences.hotkey(), hotkey);
  EXPECT_TRUE(preferences.autoCloseOnFocusLoss());
  EXPECT_TRUE(preferences.permissionGuideShown());
  EXPECT_EQ(preferences.searchWindowFrame(), "99");
}

TEST(Preferences, SayOnceThatTheyCannotBeStoredAndHoldAllTheSame) {
  FullStore store;
  test::MainThread main;
  tasks::ThreadPool pool(1);
  Preferences preferences(store, main.executor(), pool.executor());
  int said = 0;
  QObject::connect(&preferences, &Preferences::notStored, [&] { ++said; });
  preferences.setAutoCloseOnFocusLoss(true);
  preferences.setSearchWindowFrame("somewhere");
  preferences.setHotkey({.keyCode = 3, .modifiers = 256});
  storeAll(preferences, main);
  EXPECT_EQ(said, 1);
  EXPECT_TRUE(preferences.autoCloseOnFocusLoss());
  EXPECT_EQ(preferences.hotkey().keyCode, 3U);
}

}  // namespace
}  // namespace zelnor
