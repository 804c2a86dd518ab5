#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bench/SampleTerms.h"

namespace zelnor::bench {
namespace {

TEST(SampleTerms, AreFrequentOrUniqueInTheNamesGiven) {
  const std::vector<std::string> names{
      "Report 2021.pdf",   "report-final.PDF",    "quarterly_report.txt", "a.pdf",
      "会议记录 2021.pdf", "会议记录-final.docx", "Übersicht-2021.txt",   ".hidden"};
  const auto terms = SampleTerms::of(names);
  EXPECT_EQ(terms.common, "pdf");
  EXPECT_EQ(terms.rare, "quarterly");
  EXPECT_EQ(terms.cjk, "会议记");
  EXPECT_EQ(terms.extension, "pdf");
}

TEST(SampleTerms, OfNoNamesAreEmpty) {
  const auto terms = SampleTerms::of({});
  EXPECT_TRUE(terms.common.empty() && terms.rare.empty() && terms.cjk.empty() &&
              terms.extension.empty());
}

}  // namespace
}  // namespace zelnor::bench
