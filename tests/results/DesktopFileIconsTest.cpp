#include <memory>
#include <semaphore>
#include <string>

#include <asio/post.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QString>

#include "results/DesktopFileIcons.h"
#include "tasks/ThreadPool.h"
#include "tests/support/FakeFileIcons.h"
#include "tests/support/MainThread.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

FileRecord entry(const std::string& path) {
  FileRecord record;
  record.path = path;
  record.mtime = 1;
  return record;
}

class DesktopFileIconsTest : public testing::Test {
 protected:
  DesktopFileIconsTest() {
    QObject::connect(icons_.get(), &FileIcons::arrived, [this] { ++arrivals_; });
  }

  std::string picture(const std::string& name, int width, int height, QColor colour) {
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(colour);
    auto path = folder_ / name;
    image.save(QString::fromStdString(path), "PNG");
    return path;
  }
  /// Everything that was asked for is answered.
  void settle() {
    for (int turn = 0; turn < 100; ++turn) {
      std::binary_semaphore done{0};
      asio::post(pool_.executor(), [&] { done.release(); });
      done.acquire();
      main_.runReady();
    }
  }
  QImage icon(const std::string& path, int pixels = 16) {
    icons_->icon(entry(path), pixels);
    settle();
    return icons_->icon(entry(path), pixels);
  }
  /// While the answer lives, nothing can be looked up.
  std::shared_ptr<void> hold() {
    auto gate = std::make_shared<std::binary_semaphore>(0);
    asio::post(pool_.executor(), [gate] { gate->acquire(); });
    return {nullptr, [gate](void*) { gate->release(); }};
  }

  test::TemporaryFolder folder_;
  test::FakeDesktopLooks looks_;
  int arrivals_ = 0;
  test::MainThread main_;
  tasks::ThreadPool pool_{1};
  std::unique_ptr<DesktopFileIcons> icons_ =
      std::make_unique<DesktopFileIcons>(DesktopFileIcons::Services{
          std::make_unique<test::FakeFileAppearances>(looks_),
          std::make_unique<test::FakeIconFinder>(looks_), main_.executor(), pool_.executor()});
};

TEST_F(DesktopFileIconsTest, AnIconArrivesAndIsDrawnOnceForAllFilesOfItsType) {
  looks_.icons = {{"text", picture("text.png", 16, 16, Qt::red)}};
  looks_.appearances = {{"/a", {.iconNames = {"plain", "text"}, .thumbnail = {}}},
                        {"/b", {.iconNames = {"plain", "text"}, .thumbnail = {}}}};
  EXPECT_TRUE(icons_->icon(entry("/a"), 16).isNull());
  EXPECT_TRUE(icons_->icon(entry("/b"), 16).isNull());
  EXPECT_THAT(looks_.asked, IsEmpty());
  settle();
  EXPECT_EQ(arrivals_, 1);
  EXPECT_EQ(icons_->icon(entry("/a"), 16).pixelColor(5, 5), QColor(Qt::red));
  EXPECT_EQ(icons_->icon(entry("/b"), 16).pixelColor(5, 5), QColor(Qt::red));
  EXPECT_THAT(looks_.asked, ElementsAre("/b", "icon plain", "/a"));
}

TEST_F(DesktopFileIconsTest, PicturesAreMadeSmallButNotLarge) {
  looks_.icons = {{"wide", picture("wide.png", 64, 32, Qt::red)},
                  {"small", picture("small.png", 8, 8, Qt::red)},
                  {"thin", picture("thin.png", 200, 1, Qt::red)}};
  for (const auto* name : {"wide", "small", "thin"})
    looks_.appearances["/" + std::string(name)] = {.iconNames = {name}, .thumbnail = {}};
  EXPECT_EQ(icon("/wide").size(), QSize(16, 8));
  EXPECT_EQ(icon("/wide", 32).size(), QSize(32, 16));
  EXPECT_EQ(icon("/small").size(), QSize(8, 8));
  EXPECT_EQ(icon("/thin").size(), QSize(16, 1));
}

TEST_F(DesktopFileIconsTest, AThumbnailIsOfThatFileAtThatTime) {
  const auto thumbnail = picture("thumbnail.png", 128, 128, Qt::blue);
  looks_.icons = {{"image", picture("image.png", 16, 16, Qt::red)}};
  looks_.appearances = {{"/photo", {.iconNames = {"image"}, .thumbnail = thumbnail}},
                        {"/broken", {.iconNames = {"image"}, .thumbnail = folder_.file("x", "y")}}};
  EXPECT_EQ(icon("/photo").pixelColor(5, 5), QColor(Qt::blue));
  EXPECT_EQ(icon("/broken").pixelColor(5, 5), QColor(Qt::red));
  looks_.appearances["/photo"].thumbnail.clear();
  EXPECT_EQ(icon("/photo").pixelColor(5, 5), QColor(Qt::blue));
  auto changed = entry("/photo");
  changed.mtime = 2;
  EXPECT_TRUE(icons_->icon(changed, 16).isNull());
  settle();
  EXPECT_EQ(icons_->icon(changed, 16).pixelColor(5, 5), QColor(Qt::red));
}

TEST_F(DesktopFileIconsTest, WhatHasNoIconIsNotAskedForAgain) {
  looks_.icons = {{"damaged", folder_.file("damaged.png", "\x89PNG none")}};
  looks_.appearances = {{"/damaged", {.iconNames = {"damaged"}, .thumbnail = {}}},
                        {"/odd", {.iconNames = {"unknown"}, .thumbnail = {}}}};
  for (const auto* path : {"/damaged", "/odd", "/vanished"}) {
    EXPECT_TRUE(icon(path).isNull());
    const auto asked = looks_.asked;
    EXPECT_TRUE(icon(path).isNull());
    EXPECT_EQ(looks_.asked, asked) << path;
  }
}

TEST_F(DesktopFileIconsTest, TheNewestComeFirstAndTheOldestOfTooManyAreForgotten) {
  constexpr int kAsked = static_cast<int>(DesktopFileIcons::kMaxWaiting) + 100;
  for (int i = 0; i < kAsked; ++i) icons_->icon(entry("/" + std::to_string(i)), 16);
  icons_->icon(entry("/150"), 16);  // drawn again
  settle();
  std::erase_if(looks_.asked, [](const std::string& asked) { return asked.starts_with("icon"); });
  ASSERT_EQ(looks_.asked.size(), DesktopFileIcons::kMaxWaiting);
  EXPECT_EQ(looks_.asked[0], "/150");
  EXPECT_EQ(looks_.asked[1], "/" + std::to_string(kAsked - 1));
  EXPECT_EQ(looks_.asked.back(), "/100");
  EXPECT_EQ(arrivals_, static_cast<int>(DesktopFileIcons::kMaxWaiting) / 8);
}

TEST_F(DesktopFileIconsTest, ItMayGoWhileItIsBeingWaitedFor) {
  auto held = hold();
  icons_->icon(entry("/a"), 16);
  main_.runReady();
  icons_.reset();
  held.reset();
  settle();
  EXPECT_EQ(arrivals_, 0);
}

}  // namespace
}  // namespace zelnor
