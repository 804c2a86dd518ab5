#include <array>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "search/RegularExpression.h"
#include "search/RequiredLiteral.h"

namespace zelnor {
namespace {

using Answer = RegularExpression::Answer;

TEST(RequiredLiteral, IsTheLongestRunOutsideGroupsThatCannotBeLeftOut) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"(\\w+[-_]?)+\\.jpg$", ".jpg"},
      {".*e.*a.*s.*\\.rst$", ".rst"},
      {"^IMG_\\d+\\.png", "img_"},
      {"ab+c", "ab"},
      {"abc*d+", "ab"},
      {"abc?d++ef{0}g{2,3}hi+?jk*+", "ab"},
      {"x(?:abc|def)yz(?=long)(?<!long)", "yz"},
      {"a[b\\]c-]+de", "de"},
      {"aﬁbc", "bc"},
      {"a b#c", "a b#c"},
      {"", ""},
      // Not plainly understood.
      {"abc|def", ""},
      {"(?x)a b c", ""},
      {"abc(?i:d)", ""},
      {"abc((?x) d)", ""},
      {"abc(?<name>d)", ""},
      {"abc(?#comment", ""},
      {"\\Qabc*\\E", ""},
      {"abc[[:alpha:]]", ""},
      {"abc[]x]", ""},
      {"abc[\\Q]\\E]", ""},
      {"\\x41bc", ""},
      {"abc\\p{Lu}", ""},
      {"(abc)\\1def", ""},
      {"abc)", ""},
      {"(abc", ""},
  };
  for (const auto& [pattern, literal] : cases)
    EXPECT_EQ(requiredLiteral(pattern), literal) << pattern;
}

TEST(RequiredLiteral, IsLookedForInAnyCaseAndLeavesNamesBeyondAsciiToTheExpression) {
  EXPECT_TRUE(mayHoldLiteral("Old.RST", ".rst"));
  EXPECT_TRUE(mayHoldLiteral("old.rst\n", ".rst"));
  EXPECT_FALSE(mayHoldLiteral("old.rs", ".rst"));
  EXPECT_TRUE(mayHoldLiteral("old", ""));
  for (const auto& [pattern, name] : std::vector<std::pair<std::string, std::string>>{
           {"mask", "ma\u017F\u212A"}, {"file", "\uFB01le"}, {"strasse", "stra\u00DFe"}}) {
    auto expression = RegularExpression::compile(pattern);
    EXPECT_TRUE(expression->mayBeFoundIn(name)) << pattern;
    EXPECT_EQ(expression->lookIn(name, [](int) { return true; }), Answer::found) << pattern;
  }
}

/// Draws patterns and names from few letters, so that many match.
class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  std::string pattern(int depth = 0) {
    std::string text;
    for (auto count = upTo(5); count > 0; --count) text += element(depth) + oneOf(kRepeats);
    if (upTo(8) == 0) text += '|' + pattern(depth + 1);
    return text;
  }
  std::string name() {
    std::string text;
    for (auto count = 1 + upTo(7); count > 0; --count) text += oneOf(kNameParts);
    return text;
  }

 private:
  using Texts = std::vector<std::string>;
  static const Texts kElements;
  static const Texts kRepeats;
  static const Texts kGroups;
  static const Texts kNameParts;

  std::string element(int depth) {
    if (depth > 2 || upTo(5) > 0) return oneOf(kElements);
    return oneOf(kGroups) + pattern(depth + 1) + ")";
  }
  int upTo(int greatest) { return std::uniform_int_distribution(0, greatest)(random_); }
  const std::string& oneOf(const Texts& texts) {
    return texts[static_cast<std::size_t>(upTo(static_cast<int>(texts.size()) - 1))];
  }

  std::mt19937 random_;
};

const Generator::Texts Generator::kElements{
    "a",           "S",           "k",         "fi",     "ss",   "\\.",    "-",      "_",
    " ",           "#",           ".",         "^",      "$",    "\\w",    "\\d",    "\\b",
    "[a-k]",       "[^s]",        "[\\]a]",    "[[a]",   "[]a]", "\\s",    "\\Q*",   "\\E",
    "\\x41",       "\\1",         "\\p{L}",    "\u017F", "K",    "\u00DF", "\uFB01", "(?x)",
    "(?#comment)", "[[:alpha:]]", "[a&&[as]]", "\n",     "\\R",  "\\X",    "\\h",    "]",
    "\\-",         "(?<n>a)",     "\\k<n>",    "(?s)",   "\\A"};
const Generator::Texts Generator::kRepeats{"",    "",      "",    "",       "",   "",   "",
                                           "*",   "+",     "?",   "*?",     "+?", "++", "?+",
                                           "{0}", "{1,2}", "{2}", "{0,1}+", "{",  "+*"};
const Generator::Texts Generator::kGroups{"(",    "(?:",  "(?=",  "(?!",  "(?>",
                                          "(?<=", "(?<!", "(?i:", "(?x:", "(?-i:"};
const Generator::Texts Generator::kNameParts{
    "a", "A",  "s", "S", "k",  "K",  "f", "fi", "ss",     ".",      "-",      "_",      " ",   "#",
    "1", "\n", "*", "]", "ab", "s.", "x", "A",  "\u017F", "\u212A", "\u00DF", "\uFB01", "\xFF"};

/// The quick look may only say no where the expression would.
TEST(RequiredLiteral, NeverHidesAMatch) {
  const auto seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  Generator generator(seed);
  int compiled = 0;
  int hidden = 0;
  int found = 0;
  for (int i = 0; i < 20'000; ++i) {
    const auto pattern = generator.pattern();
    auto expression = RegularExpression::compile(pattern);
    if (!expression) continue;
    ++compiled;
    for (int j = 0; j < 20; ++j) {
      const auto name = generator.name();
      const bool may = expression->mayBeFoundIn(name);
      const auto answer = expression->lookIn(name, [](int ticks) { return ticks < 10; });
      ASSERT_TRUE(may || answer != Answer::found) << pattern << " in " << name;
      hidden += may ? 0 : 1;
      found += answer == Answer::found ? 1 : 0;
    }
  }
  // There was something to go wrong.
  EXPECT_GT(compiled, 1'000);
  EXPECT_GT(hidden, 1'000);
  EXPECT_GT(found, 1'000);
}

}  // namespace
}  // namespace zelnor
