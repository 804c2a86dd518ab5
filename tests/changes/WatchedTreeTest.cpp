#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/changes/WatchedTree.h"

namespace zelnor::platform {
namespace {

using testing::UnorderedElementsAre;

class WatchedTreeOfFour : public testing::Test {
 protected:
  WatchedTreeOfFour() {
    tree.attach("/r", 1, 0);
    tree.attach("/r/a", 2, 0);
    tree.attach("/r/a/b", 3, 0);
    tree.attach("/r/c", 4, 0);
  }
  WatchedTree tree;
};

TEST_F(WatchedTreeOfFour, AFolderThatTurnsUpElsewhereBringsWhatIsBelowIt) {
  tree.attach("/r/c/d", 2, 0);
  EXPECT_EQ(tree.pathOf(2), "/r/c/d");
  EXPECT_EQ(tree.pathOf(3), "/r/c/d/b");
  EXPECT_EQ(tree.keyAt("/r/a"), WatchedTree::kNoKey);
  EXPECT_EQ(tree.size(), 4);
}

TEST_F(WatchedTreeOfFour, ADetachedFolderIsNowhereUntilItTurnsUp) {
  tree.detach("/r/a");
  EXPECT_EQ(tree.pathOf(3), std::nullopt);
  tree.attach("/r/x", 2, 0);
  EXPECT_EQ(tree.pathOf(3), "/r/x/b");
  EXPECT_TRUE(tree.takeDetached().empty());
}

TEST_F(WatchedTreeOfFour, DetachedFoldersAreForgottenWithAllBelowThem) {
  tree.detach("/r/a");
  EXPECT_THAT(tree.takeDetached(), UnorderedElementsAre(2, 3));
  EXPECT_EQ(tree.size(), 2);
  tree.attach("/r/a", 5, 0);
  EXPECT_EQ(tree.keyAt("/r/a/b"), WatchedTree::kNoKey);
}

TEST_F(WatchedTreeOfFour, TwoFoldersCanChangePlaces) {
  tree.attach("/r/c", 2, 0);  // 4 is set aside
  tree.attach("/r/a", 4, 0);
  EXPECT_EQ(tree.pathOf(2), "/r/c");
  EXPECT_EQ(tree.pathOf(3), "/r/c/b");
  EXPECT_EQ(tree.pathOf(4), "/r/a");
  EXPECT_FALSE(tree.hasDetached());
}

TEST_F(WatchedTreeOfFour, AFolderCanMoveIntoItsFormerChild) {
  // b moved up to a's place, then a into it.
  tree.attach("/r/a/b/x", 2, 0);
  EXPECT_EQ(tree.pathOf(2), "/r/a/b/x");
  tree.attach("/r/a", 3, 0);
  EXPECT_EQ(tree.pathOf(3), "/r/a");
}

TEST_F(WatchedTreeOfFour, ErasingAParentKeepsItsChildren) {
  tree.erase(2);
  EXPECT_EQ(tree.pathOf(3), "/r/a/b");
  EXPECT_FALSE(tree.contains(2));
  tree.attach("/r/a", 7, 0);
  EXPECT_EQ(tree.keyAt("/r/a"), 7U);
  EXPECT_EQ(tree.pathOf(3), "/r/a/b");
}

}  // namespace
}  // namespace zelnor::platform
