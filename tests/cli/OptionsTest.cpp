#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/Failure.h"
#include "cli/Options.h"

namespace zelnor::cli {
namespace {

using Words = std::vector<std::string>;

TEST(Options, JoinTheWordsOfTheQueryAndChangeNoneOfThem) {
  const std::vector<std::pair<Words, std::string>> cases{
      {{"report", "2024"}, "report 2024"},
      {{"two words", "", "*"}, "two words  *"},
      {{"[a,b]"}, "[a,b]"},
      {{"[a,b]", "[c]"}, "[a,b] [c]"},
      {{"a,b;c", "{x}", "'q'"}, "a,b;c {x} 'q'"},
      {{"--", "-x", "--json"}, "-x --json"},
      {{"a", "--", "-x", "--", "-"}, "a -x -- -"},
      {{"-", "b"}, "- b"},
      {{"a", "-c", "b"}, "a b"},
      {{"caf\xE9\n"}, "caf\xE9\n"},
      {{"++", "/x", "%s"}, "++ /x %s"},
  };
  for (const auto& [arguments, query] : cases) EXPECT_EQ(parseOptions(arguments).queryText, query);
}

TEST(Options, ReadWhatToFind) {
  const auto options = parseOptions({"x", "--category", "image", "--size=tiny", "--date",
                                     "three_months", "--sort", "date", "--desc", "-n5"});
  EXPECT_EQ(options.filter, (SearchFilter{.category = FileTypeCategory::image,
                                          .sizePreset = SizePreset::tiny,
                                          .datePreset = DatePreset::threeMonths}));
  const auto query = options.query("*y");
  EXPECT_EQ(query,
            SearchQuery::parsed("*y", options.filter, SortField::date, /*sortAscending=*/false));
  EXPECT_EQ(options.limit, 5);
  EXPECT_EQ(parseOptions({"x"}).limit, 200);
  EXPECT_EQ(parseOptions({"x", "-n", "0"}).limit, std::numeric_limits<std::int64_t>::max());
}

TEST(Options, ReadHowToPrint) {
  const std::vector<std::pair<std::string, OutputFormat>> cases{{"-l", OutputFormat::longLines},
                                                                {"--long", OutputFormat::longLines},
                                                                {"-0", OutputFormat::null},
                                                                {"--null", OutputFormat::null},
                                                                {"--json", OutputFormat::json}};
  for (const auto& [option, format] : cases)
    EXPECT_EQ(parseOptions({option, "x"}).format, format) << option;
  EXPECT_EQ(parseOptions({"x"}).format, OutputFormat::plain);
  EXPECT_TRUE(parseOptions({"-c0", "x"}).countOnly);
}

TEST(Options, ARebuildOverridesOnlyWhatIsSaid) {
  const auto all = parseOptions({"--rebuild", "--root", "/a", "--root", "[b,c]", "--exclude",
                                 "/a/x", "--skip-hidden", "--skip-packages", "false",
                                 "--skip-symlinks", "--index", "/i", "query"});
  EXPECT_EQ(all.roots, (Words{"/a", "[b,c]"}));
  EXPECT_EQ(all.excluded, (Words{"/a/x"}));
  EXPECT_EQ(all.skipHidden, true);
  EXPECT_EQ(all.skipPackages, false);
  EXPECT_EQ(all.skipSymlinks, true);
  EXPECT_EQ(all.index, "/i");
  EXPECT_EQ(all.queryText, "query");

  const auto nothing = parseOptions({"--rebuild"});
  EXPECT_TRUE(nothing.rebuild);
  EXPECT_FALSE(nothing.roots || nothing.excluded || nothing.skipHidden || nothing.skipPackages ||
               nothing.skipSymlinks || nothing.hasQuery);
}

TEST(Options, MistakesAreOneLineThatSaysWhatToDo) {
  const std::vector<std::pair<Words, std::string>> cases{
      {{}, "--help"},
      {{"--json"}, "--help"},
      {{"-x"}, "'--'"},
      {{"--bogus=1", "x", "--", "-y"}, "--bogus=1"},
      {{"-n", "-1", "x"}, "--limit"},
      {{"-n", "many", "x"}, "--limit"},
      {{"-n", "99999999999999999999", "x"}, "--limit"},
      {{"x", "-n"}, "--limit"},
      {{"--category", "Image", "x"}, "image"},
      {{"--size", "5", "x"}, "tiny"},
      {{"--date", "threeMonths", "x"}, "three_months"},
      {{"--sort", "mtime", "x"}, "relevance"},
      {{"--root", "/a", "x"}, "--rebuild"},
      {{"--skip-packages", "no", "x"}, "--rebuild"},
      {{"--rebuild", "--skip-packages", "perhaps"}, "--skip-packages"},
      {{"-l", "-0", "x"}, "--long"},
      {{"--json", "-0", "x"}, "--json"},
      {{"--status", "x"}, "--status"},
      {{"--status", "--stdin"}, "--stdin"},
  };
  for (const auto& [arguments, hint] : cases) {
    try {
      parseOptions(arguments);
      ADD_FAILURE() << testing::PrintToString(arguments);
    } catch (const Failure& failure) {
      EXPECT_THAT(failure.what(), testing::HasSubstr(hint));
      EXPECT_THAT(failure.what(), testing::Not(testing::HasSubstr("\n")));
    }
  }
}

}  // namespace
}  // namespace zelnor::cli
