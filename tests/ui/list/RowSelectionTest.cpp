#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/search_viewmodel/FakeSearchSource.h"
#include "ui/list/RowSelection.h"

namespace zelnor::ui {
namespace {

using testing::ElementsAre;
using enum RowSelection::Gesture;

/// Rows whose identifiers run against their order: 40, 30, 20, 10, 0.
class RowSelectionTest : public testing::Test {
 protected:
  const RowSelection::IdSet& after(RowSelection::Gesture gesture, std::size_t at) {
    return selected_ = rules_.after(gesture, rows_, at, selected_);
  }

  std::vector<SearchResult> rows_{test::FakeSearchSource::row(40), test::FakeSearchSource::row(30),
                                  test::FakeSearchSource::row(20), test::FakeSearchSource::row(10),
                                  test::FakeSearchSource::row(0)};
  RowSelection rules_;
  RowSelection::IdSet selected_;
};

TEST_F(RowSelectionTest, SelectsOneRowOrChangesOneAmongOthers) {
  EXPECT_THAT(after(alone, 1), ElementsAre(30));
  EXPECT_THAT(after(toggle, 3), ElementsAre(10, 30));
  EXPECT_THAT(after(toggle, 1), ElementsAre(10));
  EXPECT_THAT(after(toggle, 3), ElementsAre());
  EXPECT_THAT(after(toggle, 0), ElementsAre(40));
  EXPECT_THAT(after(alone, 4), ElementsAre(0));
}

TEST_F(RowSelectionTest, SelectsRangesInBothDirectionsFromWhereTheUserBegan) {
  after(alone, 1);
  EXPECT_THAT(after(range, 3), ElementsAre(10, 20, 30));
  EXPECT_THAT(after(range, 0), ElementsAre(30, 40));  // from the same row, and nothing else stays
  EXPECT_THAT(after(range, 1), ElementsAre(30));
  after(toggle, 4);
  EXPECT_THAT(after(range, 3), ElementsAre(0, 10));  // from the row that was changed last
}

TEST_F(RowSelectionTest, BeginsRangesAtSomeSelectedRowWhereTheAnchorIsNone) {
  after(alone, 2);
  after(toggle, 4);
  after(toggle, 4);  // not selected any more
  EXPECT_THAT(after(range, 3), ElementsAre(10, 20));

  selected_ = {10, 40};  // by somebody else
  EXPECT_THAT(after(range, 4), ElementsAre(0, 10));
}

TEST_F(RowSelectionTest, TakesARangeWithoutABeginningForOneRow) {
  EXPECT_THAT(after(range, 2), ElementsAre(20));
  EXPECT_THAT(after(range, 3), ElementsAre(10, 20));
  selected_ = {7};  // of another search
  EXPECT_THAT(after(range, 1), ElementsAre(30));
}

}  // namespace
}  // namespace zelnor::ui
