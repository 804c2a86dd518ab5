#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>

#include "platform/ActivationSource.h"
#include "platform/TrayItem.h"
#include "ui/tray/MenuBarManager.h"

namespace zelnor::ui {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FakeTrayItem final : public platform::TrayItem {
 public:
  void show(Description what, Events whatHappens) override {
    description = std::move(what);
    events = std::move(whatHappens);
  }

  Description description;
  Events events;
};

class NoActivations final : public platform::ActivationSource {
 public:
  void request(Ready ready) override { ready({}); }
};

class MenuBarManagerTest : public testing::Test {
 protected:
  MenuBarManagerTest() {
    const auto note = [this](const char* what) {
      return [this, what](const platform::Activation& a) { done_.push_back(what + a.token); };
    };
    manager_.setup(note("search "), note("settings "), [this] { done_.emplace_back("quit"); });
  }

  FakeTrayItem item_;
  NoActivations activations_;
  MenuBarManager manager_{item_, activations_};
  std::vector<std::string> done_;
};

TEST_F(MenuBarManagerTest, TheMenuLeadsToThePanelTheSettingsAndTheEnd) {
  EXPECT_EQ(item_.description.toolTip, "Zelnor - 快速文件搜索");
  std::vector<std::string> titles;
  for (const auto& entry : item_.description.menu) titles.push_back(entry.title);
  EXPECT_THAT(titles, ElementsAre("搜索文件...", "", "偏好设置...", "", "退出 Zelnor"));
  EXPECT_THAT(item_.description.menu[2].shortcut, ElementsAre("Control", ","));
  EXPECT_THAT(item_.description.menu[4].shortcut, ElementsAre("Control", "Q"));
  EXPECT_THAT(item_.description.menu[0].shortcut, IsEmpty());
  EXPECT_THAT(item_.description.menu[4].png, IsEmpty());

  for (const std::size_t entry : {4U, 0U, 2U}) item_.events.chosen(entry, {.token = "token"});
  EXPECT_THAT(done_, ElementsAre("quit", "search token", "settings token"));
}

TEST_F(MenuBarManagerTest, TheSymbolCanBeReadOnLightAndDarkBars) {
  constexpr int kLeastContrast = 90;  // of 255
  ASSERT_FALSE(item_.description.pictures.empty());
  for (const auto& picture : item_.description.pictures) {
    const auto side = static_cast<std::size_t>(picture.side);
    ASSERT_EQ(picture.pixels.size(), 4 * side * side);
    std::size_t drawn = 0;
    for (std::size_t at = 0; at < picture.pixels.size(); at += 4) {
      const auto channel = [&](std::size_t n) {
        return static_cast<unsigned char>(picture.pixels[at + n]);
      };
      if (channel(0) < 128) continue;
      ++drawn;
      for (const std::size_t color : {1U, 2U, 3U}) {
        EXPECT_GT(channel(color), kLeastContrast);
        EXPECT_LT(channel(color), 255 - kLeastContrast);
      }
    }
    EXPECT_GT(drawn, side);  // a ring and a handle, not an empty place
    EXPECT_LT(drawn, side * side / 2);
  }
  for (const std::size_t entry : {0U, 2U}) {
    const auto& png = item_.description.menu[entry].png;
    EXPECT_FALSE(QImage::fromData(QByteArray::fromStdString(png), "PNG").isNull());
  }
}

TEST_F(MenuBarManagerTest, PlacesNoMenuOfItsOwnWhereTheWindowSystemForbidsIt) {
  EXPECT_FALSE(item_.events.menuRequested(10, 10));
  item_.events.shownChanged(false);
  item_.events.shownChanged(true);
}

}  // namespace
}  // namespace zelnor::ui
