#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/PanelFrame.h"

namespace zelnor::app {

namespace {

constexpr QSize kSize(680, 520);
/// A large one with a bar on top, and a small one to the right of it.
const std::vector<ScreenArea> kScreens{
    {.whole = {0, 0, 1920, 1080}, .available = {0, 40, 1920, 1040}},
    {.whole = {1920, 0, 800, 600}, .available = {1920, 0, 800, 600}},
};

TEST(PanelFrame, IsReadAsItWasWrittenAndNotOtherwise) {
  for (const QRect frame : {QRect(0, 0, 680, 520), QRect(-1900, 12, 600, 3000)}) {
    EXPECT_EQ(frameFrom(frameText(frame)), frame);
  }
  EXPECT_EQ(frameText({1, 2, 3, 4}), "{{1, 2}, {3, 4}}");
  for (const auto* text : {"", "{{1, 2}, {3, 4}", "{{1, 2}, {3, 4}} ", "{{1, 2}, {3}}",
                           "{{1, 2}, {0, 4}}", "{{1, 2}, {-3, 4}}", "{{99999999, 2}, {3, 4}}",
                           "{{99999999999, 2}, {3, 4}}", "{{a, 2}, {3, 4}}", "1 2 3 4"}) {
    EXPECT_EQ(frameFrom(text), std::nullopt) << text;
  }
}

TEST(PanelFrame, IsFirstAboveTheMiddleOfTheScreenUnderThePointer) {
  EXPECT_EQ(firstFrame(kSize, {100, 100}, kScreens), QRect(620, 220, 680, 520));
  EXPECT_EQ(firstFrame(kSize, {2000, 100}, kScreens), QRect(1980, 0, 680, 520));
  EXPECT_EQ(firstFrame(kSize, {5000, 5000}, kScreens), QRect(620, 220, 680, 520));
  EXPECT_EQ(firstFrame(kSize, {100, 100}, {}), QRect(0, 0, 680, 520));
}

TEST(PanelFrame, IsMovedOntoTheNearestScreenIfNobodyCouldGetHoldOfIt) {
  const std::vector<std::pair<QRect, QRect>> cases{
      // Within a screen, across two, partly beyond an edge: as it was.
      {{10, 50, 680, 520}, {10, 50, 680, 520}},
      {{1700, 100, 680, 520}, {1700, 100, 680, 520}},
      {{-500, 600, 680, 520}, {-500, 600, 680, 520}},
      // Beyond an edge, below all, under the bar: beside it.
      {{-2000, 100, 680, 520}, {0, 100, 680, 520}},
      {{100, 5000, 680, 520}, {100, 560, 680, 520}},
      {{100, -10, 680, 520}, {100, 40, 680, 520}},
      {{4000, 20, 680, 520}, {2040, 20, 680, 520}},
      // Larger than all screens together: as large as they are, and its upper left corner.
      {{10, 50, 100000, 100000}, {10, 50, 2720, 1080}},
      {{9000, 9000, 3000, 3000}, {1920, 0, 2720, 1080}},
  };
  for (const auto& [frame, moved] : cases) {
    EXPECT_EQ(movedOntoScreen(frame, kScreens), moved) << frameText(frame);
  }
  EXPECT_EQ(movedOntoScreen({9, 9, 9, 9}, {}), QRect(9, 9, 9, 9));
}

}  // namespace
}  // namespace zelnor::app
