#include <gtest/gtest.h>

#include "platform/linux/changes/FollowedFolders.h"
#include "platform/linux/changes/SurveyRequests.h"

namespace zelnor::platform {
namespace {

TEST(SurveyRequests, LookForArrivalsFirstAndUniteWhatOverlaps) {
  SurveyRequests requests;
  requests.add("/r/gone", SurveyDepth::tree);
  requests.add("/r/gone/below", SurveyDepth::tree);
  requests.add("/r/gone/below", SurveyDepth::children);
  requests.add("/r/list", SurveyDepth::children);
  requests.add("/r/list", SurveyDepth::tree);
  requests.add("/r/new", SurveyDepth::arrival);
  requests.add("/r/new", SurveyDepth::contents);
  requests.add("/r/new/below", SurveyDepth::contents);
  requests.add("/r/newer", SurveyDepth::contents);
  requests.add("/r/new/moved", SurveyDepth::arrival);
  requests.add("/r/former", SurveyDepth::tree);
  requests.drop("/r/former");
  std::vector<std::pair<std::string, SurveyDepth>> order;
  while (const auto request = requests.take()) order.emplace_back(request->path, request->depth);
  EXPECT_EQ(order,
            (std::vector<std::pair<std::string, SurveyDepth>>{{"/r/new", SurveyDepth::arrival},
                                                              {"/r/newer", SurveyDepth::contents},
                                                              {"/r/gone", SurveyDepth::tree},
                                                              {"/r/list", SurveyDepth::tree}}));
}

TEST(FollowedFolders, KeepTheShallowAndTheRecentWhenTheyAreTooMany) {
  constexpr std::int64_t kYear = 365 * 24 * 3600;
  FollowedFolders folders(/*limit=*/2);
  EXPECT_FALSE(folders.add("/r/a/b/c", 1, watchRank("/r/a/b/c", 0)));
  EXPECT_FALSE(folders.add("/r/old", 2, watchRank("/r/old", kYear)));
  EXPECT_FALSE(folders.admits("/r/a/b/older", watchRank("/r/a/b/older", kYear)));
  ASSERT_TRUE(folders.admits("/r/a", watchRank("/r/a", 0)));
  const auto excess = folders.add("/r/a", 3, watchRank("/r/a", 0));
  ASSERT_TRUE(excess);
  EXPECT_EQ(excess->path, "/r/old");
  EXPECT_EQ(folders.size(), 2);
  EXPECT_TRUE(folders.contains("/r/a"));
  // What is followed already is always welcome.
  EXPECT_TRUE(folders.admits("/r/a/b/c", watchRank("/r/a/b/c", kYear)));
}

}  // namespace
}  // namespace zelnor::platform
