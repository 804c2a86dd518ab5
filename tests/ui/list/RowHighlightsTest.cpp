#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "ui/Palette.h"
#include "ui/Style.h"
#include "ui/list/RowFades.h"
#include "ui/list/RowHighlights.h"

namespace zelnor::ui {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(RowFades, EasesInAndOutAndTurnsBackFromWhereItIs) {
  RowFades fades(milliseconds(100));
  const auto amount = [&](int id, bool isOn, int at) {
    return fades.amount(id, isOn, milliseconds(at));
  };
  EXPECT_EQ(amount(1, true, 0), 1);
  EXPECT_EQ(amount(1, false, 0), 0);

  fades.turn(1, true, milliseconds(1000));
  EXPECT_EQ(amount(1, true, 1000), 0);
  EXPECT_LT(amount(1, true, 1020), 0.2);  // slower than even
  EXPECT_NEAR(amount(1, true, 1050), 0.5, 0.01);
  EXPECT_GT(amount(1, true, 1080), 0.8);
  fades.turn(1, false, milliseconds(1050));
  EXPECT_NEAR(amount(1, false, 1050), 0.5, 0.01);
  EXPECT_NEAR(amount(1, false, 1100), 0.25, 0.01);

  fades.turn(2, true, milliseconds(1100));
  EXPECT_THAT(fades.advance(milliseconds(1150)), testing::UnorderedElementsAre(1, 2));
  EXPECT_THAT(fades.advance(milliseconds(1200)), ElementsAre(2));
  EXPECT_TRUE(fades.isEmpty());

  RowFades still(milliseconds(0));
  still.turn(1, true, milliseconds(0));
  EXPECT_TRUE(still.isEmpty());
}

TEST(RowHighlights, ChangesGentlyWhatIsToBeSeenAndThenComesToRest) {
  QWidget view;
  Style style(Style::Motion::animated);
  view.setStyle(&style);
  RowHighlights highlights(view);
  const QSignalSpy changed(&highlights, &RowHighlights::changed);
  highlights.show({{.id = 1, .isSelected = false}, {.id = 2, .isSelected = true}});
  EXPECT_EQ(highlights.background(2, true), palette::kSelection);  // nobody saw it before
  EXPECT_THAT(changed, IsEmpty());

  highlights.show({{.id = 1, .isSelected = true}, {.id = 2, .isSelected = true}});
  EXPECT_NE(highlights.background(1, true), palette::kSelection);
  EXPECT_EQ(highlights.background(2, true), palette::kSelection);
  highlights.setHovered(7);
  EXPECT_NE(highlights.background(7, false), palette::kHover);
  EXPECT_TRUE(QTest::qWaitFor([&] {
    return highlights.background(1, true) == palette::kSelection &&
           highlights.background(7, false) == palette::kHover;
  }));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !highlights.isMoving(); }));
}

TEST(RowHighlights, IsStillWhereTheUserWantsStillness) {
  QWidget view;
  Style style(Style::Motion::still);
  view.setStyle(&style);
  RowHighlights highlights(view);
  highlights.show({{.id = 1, .isSelected = false}});
  highlights.show({{.id = 1, .isSelected = true}});
  highlights.setHovered(1);
  EXPECT_FALSE(highlights.isMoving());
  EXPECT_EQ(highlights.background(1, true), palette::kSelection);
  EXPECT_EQ(highlights.background(1, false), palette::kHover);
  highlights.setHovered(std::nullopt);
  EXPECT_EQ(highlights.background(1, false), palette::kPanel);
}

}  // namespace
}  // namespace zelnor::ui
