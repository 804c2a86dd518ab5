#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ui/DisplayText.h"

namespace zelnor::ui {
namespace {

std::string shown(std::string_view bytes) { return displayText(bytes).toStdString(); }

TEST(DisplayText, ShowsEveryByteOfAName) {
  using std::string_view_literals::operator""sv;
  struct Case {
    std::string_view bytes;
    std::string_view shown;
  };
  for (const auto& [bytes, expected] : {
           Case{"报告 2024.pdf"sv, "报告 2024.pdf"sv},
           Case{"👨‍👩‍👧.png"sv,
                "👨‍👩‍👧.png"sv},  // joiners belong to the picture
           Case{"latin-\xE9.txt"sv, "latin-\uFFFD.txt"sv},
           Case{"cut \xE6\x8A"sv, "cut \uFFFD\uFFFD"sv},
           Case{"a\nb\tc\x1B\x7F"sv, "a␊b␉c␛␡"sv},
           Case{"zero\0byte"sv, "zero␀byte"sv},
           Case{"exe.\u202Egnp"sv, "exe.⟨U+202E⟩gnp"sv},
           Case{"\uFEFFmarked"sv, "⟨U+FEFF⟩marked"sv},
           Case{"line\u2028\u0085end"sv, "line⟨U+2028⟩⟨U+0085⟩end"sv},
       }) {
    EXPECT_EQ(shown(bytes), expected);
  }
}

TEST(DisplayText, ShowsTheFolderOfAPath) {
  EXPECT_EQ(displayFolder("/home/li/a.txt"), QStringLiteral("/home/li"));
  EXPECT_EQ(displayFolder("/vmlinuz"), QStringLiteral("/"));
}

TEST(DisplayText, ShowsSizesInDecimalUnitsAndCountsInGroups) {
  const QLocale chinese(QLocale::Chinese, QLocale::China);
  const std::vector<std::pair<std::int64_t, QString>> sizes{
      {0, QStringLiteral(u"0 字节")},
      {999, QStringLiteral(u"999 字节")},
      {843'200, QStringLiteral("843 KB")},
      {999'499, QStringLiteral("999 KB")},
      {999'500, QStringLiteral("1 MB")},
      {1'234'567, QStringLiteral("1.2 MB")},
      {1'250'000'000, QStringLiteral("1.25 GB")},
      {2'000'000'000'000, QStringLiteral("2 TB")},
      {std::numeric_limits<std::int64_t>::max(), QStringLiteral("9.22 EB")},
  };
  for (const auto& [bytes, text] : sizes) EXPECT_EQ(sizeText(bytes, chinese), text);
  EXPECT_EQ(countText(1'234'567, chinese), QStringLiteral("1,234,567"));
  EXPECT_EQ(countText(1'234'567, QLocale(QLocale::German)), QStringLiteral("1.234.567"));
}

}  // namespace
}  // namespace zelnor::ui
