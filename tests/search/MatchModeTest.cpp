#include <tuple>

#include <gtest/gtest.h>

#include "search/MatchMode.h"

namespace zelnor {
namespace {

TEST(MatchMode, IsReadFromTheTextAndWrittenIntoIt) {
  using enum MatchMode;
  using Case = std::tuple<std::string, MatchMode, std::string, std::string, std::string>;
  for (const auto& [text, mode, asContains, asWildcard, asRegex] :
       {Case{"r:abc", regex, "abc", "*abc*", "r:abc"},
        Case{"  foo  ", contains, "foo", "*foo*", "r:foo"}, Case{"re:x*", regex, "x", "*x*", "r:x"},
        Case{"", contains, "", "*", "r:"}, Case{"a*b", wildcard, "ab", "*ab*", "r:ab"},
        Case{"?", wildcard, "", "*", "r:"}, Case{"r: \t", regex, "", "*", "r:"},
        Case{"\nx", contains, "\nx", "*\nx*", "r:\nx"},
        Case{"r:re:x", regex, "re:x", "*re:x*", "r:re:x"}}) {
    EXPECT_EQ(currentMatchMode(text), mode) << text;
    EXPECT_EQ(switchedMode(text, contains), asContains) << text;
    EXPECT_EQ(switchedMode(text, wildcard), asWildcard) << text;
    EXPECT_EQ(switchedMode(text, regex), asRegex) << text;
  }
}

}  // namespace
}  // namespace zelnor
