#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/desktop/tray/DesktopTrayItem.h"
#include "tests/platform_desktop/FakeWatcher.h"
#include "tests/support/PrivateBus.h"

namespace zelnor::platform {
namespace {

using test::FakeWatcher;
using test::runLoopUntil;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kItem = "/StatusNotifierItem";
constexpr const char* kItemInterface = "org.kde.StatusNotifierItem";
constexpr const char* kMenuPath = "/MenuBar";
constexpr const char* kMenuInterface = "com.canonical.dbusmenu";

std::string text(GVariant* value) {
  const GLibPointer<char> printed(g_variant_print(value, /*type_annotate=*/FALSE));
  return printed.get();
}

class TrayItemTest : public testing::Test {
 protected:
  void show() {
    item_->show({.id = "it",
                 .title = "It",
                 .toolTip = "what it \"is\"",
                 .iconName = "no-bar-has-this-symbolic",
                 .pictures = {{.side = 1, .pixels = std::string("\xff\x01\x02\x03", 4)}},
                 .menu = {{.title = "first_one", .png = "PNG", .shortcut = {"Control", ","}},
                          {},
                          {.title = "second", .png = {}, .shortcut = {}}}},
                {.chosen = [this](std::size_t entry,
                                  const Activation& a) { chosen_.emplace_back(entry, a.token); },
                 .menuRequested =
                     [this](int x, int y) {
                       requested_.emplace_back(x, y);
                       return canPopUp_;
                     },
                 .shownChanged = [this](bool isShown) { shown_.push_back(isShown); }});
  }
  std::unique_ptr<FakeWatcher> watcher(bool hasHost = true) const {
    return std::make_unique<FakeWatcher>(bus_.address(), hasHost);
  }
  void waitForShown(std::vector<bool> states) const {
    runLoopUntil([&] { return shown_.size() >= states.size(); });
    EXPECT_EQ(shown_, states);
  }
  static GVariant* click(int entry, const char* kind, std::uint32_t time) {
    return g_variant_new("(isvu)", entry, kind, g_variant_new_string(""), time);
  }

  test::PrivateBus bus_;
  std::unique_ptr<DesktopTrayItem> item_ = std::make_unique<DesktopTrayItem>(bus_.address());
  std::vector<bool> shown_;
  std::vector<std::pair<std::size_t, std::string>> chosen_;
  std::vector<std::pair<int, int>> requested_;
  bool canPopUp_ = true;
};

TEST_F(TrayItemTest, ComesWithTheBarWhicheverIsThereFirstAndComesBackWithTheNext) {
  show();
  waitForShown({false});
  auto bar = watcher();
  waitForShown({false, true});
  EXPECT_EQ(bar->items().size(), 1U);
  bar.reset();
  waitForShown({false, true, false});
  bar = watcher();
  waitForShown({false, true, false, true});
  EXPECT_EQ(bar->items().size(), 1U);
}

TEST_F(TrayItemTest, IsShownOnlyWhereTheWatcherHasABar) {
  const auto bar = watcher(/*hasHost=*/false);
  show();
  waitForShown({false});
  EXPECT_EQ(bar->items().size(), 1U);
  bar->setHasHost(true);
  waitForShown({false, true});
  bar->setHasHost(false);
  waitForShown({false, true, false});
}

TEST_F(TrayItemTest, SaysNothingOfABarThatDoesNotTakeIt) {
  auto bar = watcher();
  bar->setRefuses();
  show();
  runLoopUntil([&] { return !bar->items().empty(); });
  // The refusal came before this question.
  EXPECT_TRUE(bar->ask(kItem, "org.freedesktop.DBus.Peer", "Ping", nullptr));
  EXPECT_TRUE(shown_.empty());
  bar.reset();
  waitForShown({false});
}

TEST_F(TrayItemTest, ComesBackWithTheBusAndIsQuietWithoutOne) {
  auto bar = watcher();
  show();
  waitForShown({true});
  bar.reset();
  bus_.stop();
  waitForShown({true, false});
  bus_.start();
  bar = watcher();
  waitForShown({true, false, true});

  item_ = std::make_unique<DesktopTrayItem>("");
  shown_.clear();
  show();
  waitForShown({false});
}

TEST_F(TrayItemTest, TellsTheBarWhatItIs) {
  const auto bar = watcher();
  show();
  waitForShown({true});
  const auto all = bar->ask(kItem, "org.freedesktop.DBus.Properties", "GetAll",
                            g_variant_new("(s)", kItemInterface));
  ASSERT_TRUE(all);
  const auto printed = text(all.get());
  for (const auto* part :
       {"'Id': <'it'>", "'Title': <'It'>", "'Status': <'Active'>", "'ItemIsMenu': <true>",
        "'Menu': <objectpath '/MenuBar'>", "'Category': <'ApplicationStatus'>",
        "'ToolTip': <('', @a(iiay) [], 'what it \"is\"', '')>",
        "[(1, 1, [byte 0xff, 0x01, 0x02, 0x03])]",
        // A name that bars cannot find would leave an empty place.
        "'IconName': <''>"}) {
    EXPECT_THAT(printed, HasSubstr(part));
  }
}

TEST_F(TrayItemTest, TheBarDrawsTheMenu) {
  const auto bar = watcher();
  show();
  waitForShown({true});
  const std::vector<const char*> none;
  const auto layout =
      bar->ask(kMenuPath, kMenuInterface, "GetLayout",
               g_variant_new("(ii@as)", 0, -1, g_variant_new_strv(none.data(), /*length=*/0)));
  ASSERT_TRUE(layout);
  EXPECT_EQ(text(layout.get()),
            "(1, (0, {'children-display': <'submenu'>}, ["
            "<(1, {'label': <'first__one'>, 'icon-data': <[byte 0x50, 0x4e, 0x47]>, 'shortcut': "
            "<[['Control', ',']]>}, @av [])>, <(2, {'type': <'separator'>}, @av [])>, "
            "<(3, {'label': <'second'>}, @av [])>]))");
  const auto one =
      bar->ask(kMenuPath, kMenuInterface, "GetProperty", g_variant_new("(is)", 3, "label"));
  ASSERT_TRUE(one);
  EXPECT_EQ(text(one.get()), "(<'second'>,)");
  EXPECT_FALSE(
      bar->ask(kMenuPath, kMenuInterface, "GetProperty", g_variant_new("(is)", 99, "label")));
}

TEST_F(TrayItemTest, WhatIsChosenComesWithTheTokenThatTheBarGaveForIt) {
  const auto bar = watcher();
  show();
  waitForShown({true});
  bar->ask(kItem, kItemInterface, "ProvideXdgActivationToken", g_variant_new("(s)", "token"));
  const auto event = [&](int entry, const char* kind) {
    EXPECT_TRUE(bar->ask(kMenuPath, kMenuInterface, "Event", click(entry, kind, /*time=*/0)));
  };
  for (const int nothing : {-1, 0, 4, 2'000'000'000}) event(nothing, "clicked");
  event(1, "hovered");
  EXPECT_TRUE(chosen_.empty());
  event(3, "clicked");
  event(1, "clicked");
  EXPECT_THAT(chosen_, ElementsAre(std::pair(2U, "token"), std::pair(0U, "")));
}

TEST_F(TrayItemTest, ABarThatOpensNoMenusGetsOursOrIsToldThatItCannot) {
  const auto bar = watcher();
  show();
  waitForShown({true});
  EXPECT_TRUE(bar->ask(kItem, kItemInterface, "Activate", g_variant_new("(ii)", 30, -4)));
  canPopUp_ = false;
  EXPECT_FALSE(bar->ask(kItem, kItemInterface, "ContextMenu", g_variant_new("(ii)", 1, 2)));
  EXPECT_THAT(requested_, ElementsAre(std::pair(30, -4), std::pair(1, 2)));
}

}  // namespace
}  // namespace zelnor::platform
