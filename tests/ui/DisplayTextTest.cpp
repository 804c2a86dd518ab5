#include <utility>

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
  using Case = std::pair<std::int64_t, QStringView>;
  for (const auto& [bytes, text] :
       {Case{0, u"0 字节"}, Case{999, u"999 字节"}, Case{1'000, u"1 KB"}, Case{843'210, u"843 KB"},
        Case{999'499, u"999 KB"}, Case{999'500, u"1 MB"}, Case{1'234'567, u"1.2 MB"},
        Case{31'000'000, u"31 MB"}, Case{3'214'000'000, u"3.21 GB"},
        Case{5'000'000'000'000'000'000, u"5 EB"}}) {
    EXPECT_EQ(sizeText(bytes, chinese), text);
  }
  EXPECT_EQ(sizeText(1'250'000, QLocale(QLocale::German)), QStringLiteral("1,3 MB"));
  EXPECT_EQ(countText(1'234'567, chinese), QStringLiteral("1,234,567"));
  EXPECT_EQ(countText(1'234'567, QLocale(QLocale::German)), QStringLiteral("1.234.567"));
}

}  // namespace
}  // namespace zelnor::ui
