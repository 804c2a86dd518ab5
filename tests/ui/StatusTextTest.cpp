#include <gtest/gtest.h>

#include "ui/panel/StatusText.h"

namespace zelnor::ui {
namespace {

/// Takes the most important fact away, one by one, and looks at what comes to light.
TEST(StatusText, TellsWhatMattersMost) {
  const QLocale chinese(QLocale::Chinese, QLocale::China);
  using Tone = StatusText::Tone;
  StatusFacts facts{.error = QStringLiteral(u"搜索失败：坏了"),
                    .isSearching = true,
                    .isIndexing = true,
                    .processedFiles = 12345,
                    .notice = QStringLiteral(u"注意"),
                    .resultCount = 1234,
                    .isIncomplete = true,
                    .totalFiles = 5000};
  const auto expectText = [&](const char16_t* text, Tone tone, bool isBusy = false) {
    const auto actual = statusText(facts, chinese);
    EXPECT_EQ(actual.text.toStdString(), QString::fromUtf16(text).toStdString());
    EXPECT_EQ(actual.tone, tone);
    EXPECT_EQ(actual.isBusy, isBusy);
  };
  expectText(u"搜索失败：坏了", Tone::error);
  facts.error.reset();
  expectText(u"搜索中...", Tone::normal, true);
  facts.isSearching = false;
  expectText(u"正在建立索引... 12345 个文件", Tone::normal, true);
  facts.isIndexing = false;
  expectText(u"至少 1,234 个结果", Tone::normal);
  facts.isIncomplete = false;
  expectText(u"共找到 1,234 个结果", Tone::normal);
  facts.resultCount = 0;
  expectText(u"注意", Tone::normal);
  facts.notice.reset();
  expectText(u"已索引 5,000 个文件", Tone::faint);
  facts.totalFiles = 0;
  expectText(u"准备就绪", Tone::faint);
}

TEST(StatusText, NamesTheSortFieldAndItsDirection) {
  EXPECT_EQ(sortTitle(SortField::date, /*ascending=*/false).toStdString(), "排序：修改日期 ↓");
  EXPECT_EQ(sortTitle(SortField::relevance, /*ascending=*/true).toStdString(), "排序：匹配度 ↑");
}

}  // namespace
}  // namespace zelnor::ui
