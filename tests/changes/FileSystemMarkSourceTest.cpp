#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/changes/FileSystemMarkSource.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::platform {
namespace {

/// Notes the names that changed.
class Names final : public ChangeSink {
 public:
  std::vector<std::string> names;

  void folderChanged(const FolderChange& change) override { names.push_back(change.name); }
  void changesLost() override { ADD_FAILURE() << "changes were lost"; }
  void givenUp(const std::vector<std::string>& /*folders*/) override {}
};

TEST(FileSystemMarkSource, TellsOfASecondRootAlsoIfSomethingHappenedThereBeforeItWasFollowed) {
  const auto source = FileSystemMarkSource::create({});
  if (!source) GTEST_SKIP() << "takes privileges";
  const test::TemporaryFolder tree;
  Names seen;
  const auto follow = [&](const std::string& folder) {
    return source->follow(folder, examine(folder), seen);
  };
  ASSERT_TRUE(follow(tree.folder("one")));
  tree.file("two/before");
  source->readChanges(seen);
  ASSERT_TRUE(follow(tree / "two"));
  tree.file("two/after");
  source->readChanges(seen);
  EXPECT_THAT(seen.names, testing::AllOf(testing::Contains("after"),
                                         testing::Not(testing::Contains("before"))));
}

}  // namespace
}  // namespace zelnor::platform
