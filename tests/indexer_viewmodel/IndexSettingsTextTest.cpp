#include <array>

#include <gtest/gtest.h>

#include <QDateTime>

#include "indexer/IndexSettingsText.h"

namespace zelnor {
namespace {

const QLocale kChinese(QLocale::Chinese, QLocale::China);

IndexStatus statusOf(std::int64_t processed, std::int64_t total) {
  IndexStatus status;
  status.processedFiles = processed;
  status.totalFiles = total;
  return status;
}

TEST(IndexSettingsText, ShowsCountAndTimeOfTheLastRebuild) {
  auto status = statusOf(/*processed=*/1'234'567, /*total=*/1'234'567);
  const QDateTime local(QDate(2024, 1, 5), QTime(15, 4, 59));
  status.lastIndexDate =
      std::chrono::system_clock::time_point(std::chrono::milliseconds(local.toMSecsSinceEpoch()));
  const auto text = indexSettingsText(status, /*isRebuilding=*/false, kChinese);
  EXPECT_EQ(text.state, QStringLiteral(u"状态：正常"));
  EXPECT_EQ(text.cardButton, QStringLiteral(u"立即重建索引"));
  EXPECT_EQ(text.fileCount, QStringLiteral(u"1,234,567 个"));
  EXPECT_EQ(text.lastUpdate, QStringLiteral(u"2024年1月5日 15:04"));
  EXPECT_EQ(text.sectionButton, QStringLiteral(u"重建索引"));
  EXPECT_EQ(text.indexedFiles, QStringLiteral(u"已索引文件：1,234,567 个"));
  EXPECT_EQ(text.lastIndexed, QStringLiteral(u"上次索引：2024/1/5 15:04"));

  const auto german =
      indexSettingsText(status, /*isRebuilding=*/false, QLocale(QLocale::German, QLocale::Germany));
  EXPECT_EQ(german.fileCount, QStringLiteral(u"1.234.567 个"));
  EXPECT_EQ(german.lastUpdate, QStringLiteral(u"05.01.2024, 15:04"));
}

TEST(IndexSettingsText, SaysHowFoldersAreFollowedOnceThatIsKnown) {
  IndexStatus status;
  EXPECT_FALSE(indexSettingsText(status, /*isRebuilding=*/false, kChinese).followed);
  status.followed = platform::FollowCount{.live = 12'345, .swept = 6};
  EXPECT_EQ(indexSettingsText(status, /*isRebuilding=*/false, kChinese).followed,
            QStringLiteral(u"实时跟踪 12,345 个文件夹，定期检查 6 个文件夹"));
}

TEST(IndexSettingsText, TellsOfTheRebuildThatRunsAndOfNoneBeforeIt) {
  const auto text = indexSettingsText(IndexStatus{}, /*isRebuilding=*/true, kChinese);
  EXPECT_EQ(text.state, QStringLiteral(u"状态：索引中"));
  EXPECT_EQ(text.cardButton, QStringLiteral(u"索引中..."));
  EXPECT_EQ(text.sectionButton, QStringLiteral(u"索引中..."));
  EXPECT_EQ(text.fileCount, QStringLiteral(u"0 个"));
  EXPECT_EQ(text.lastUpdate, QStringLiteral(u"尚未索引"));
  EXPECT_FALSE(text.lastIndexed);
}

TEST(RebuildProgress, IsMeasuredByWhatTheIndexHeldBefore) {
  struct Row {
    IndexStatus status;
    std::optional<double> progress;
  };
  const std::array rows{Row{.status = statusOf(0, 0), .progress = 0},
                        Row{.status = statusOf(0, 1'000), .progress = 0},
                        Row{.status = statusOf(1, 0), .progress = std::nullopt},
                        Row{.status = statusOf(1, 1), .progress = 1},
                        Row{.status = statusOf(250, 1'000), .progress = 0.25},
                        Row{.status = statusOf(1'500, 1'000), .progress = 1}};
  for (const auto& row : rows) {
    EXPECT_EQ(rebuildProgress(row.status), row.progress)
        << row.status.processedFiles << " of " << row.status.totalFiles;
  }
}

}  // namespace
}  // namespace zelnor
