#include <set>
#include <string>
#include <system_error>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "bench/BareWalk.h"
#include "bench/TreeMaker.h"
#include "platform/DirectoryEnumerator.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::bench {
namespace {

using Listing = std::set<std::tuple<std::string, std::int64_t, std::int64_t>>;

/// Path below `folder`, size and time of everything.
Listing list(const std::string& folder) {
  Listing listing;
  auto entries = platform::DirectoryEnumerator::open(folder, {});
  while (const auto entry = entries->next()) {
    listing.emplace(entry->path.substr(folder.size()), entry->attributes.size,
                    entry->attributes.mtime);
  }
  return listing;
}

TEST(TreeMaker, SameSeedMakesTheSameTreeOfAsManyEntriesAsWanted) {
  constexpr std::uint64_t kEntries = 500;
  const test::TemporaryFolder folder;
  for (const auto& [name, seed] : {std::pair{"a", 1U}, {"b", 1U}, {"c", 2U}}) {
    EXPECT_EQ(makeTree(folder / name, TreePlan(kEntries, seed)), kEntries);
  }
  const auto first = list(folder / "a");
  EXPECT_EQ(first.size(), kEntries);
  EXPECT_EQ(list(folder / "b"), first);
  EXPECT_NE(list(folder / "c"), first);
}

TEST(TreeMaker, RefusesAFolderThatHoldsSomething) {
  const test::TemporaryFolder folder;
  folder.file("precious");
  EXPECT_THROW(makeTree(folder.path(), TreePlan(/*entries=*/10, /*seed=*/1)), std::system_error);
  EXPECT_EQ(bareWalk(folder.path()).entries, 1);
}

TEST(TreePlan, MixesKindsAndNamesLikeAHomeFolder) {
  constexpr std::uint64_t kEntries = 50'000;
  TreePlan plan(kEntries, /*seed=*/7);
  std::uint64_t folders = 0;
  std::uint64_t links = 0;
  std::uint64_t hidden = 0;
  std::uint64_t nameBytes = 0;
  std::uint64_t count = 0;
  for (; const auto entry = plan.next(); ++count) {
    folders += entry->kind == PlannedEntry::Kind::folder ? 1 : 0;
    links += entry->kind == PlannedEntry::Kind::link ? 1 : 0;
    hidden += entry->name.front() == '.' ? 1 : 0;
    nameBytes += entry->name.size();
    ASSERT_LE(entry->name.size(), 255U);
    ASSERT_EQ(entry->name.find('/'), std::string::npos);
  }
  EXPECT_EQ(count, kEntries);
  EXPECT_NEAR(static_cast<double>(folders) / kEntries, 0.09, 0.03);
  EXPECT_NEAR(static_cast<double>(nameBytes) / kEntries, 20, 3);
  EXPECT_GT(links, 0U);
  EXPECT_GT(hidden, 0U);
}

}  // namespace
}  // namespace zelnor::bench
