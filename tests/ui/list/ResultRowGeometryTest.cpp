#include <gtest/gtest.h>

#include <QFontMetrics>

#include "ui/Typography.h"
#include "ui/list/ResultRowGeometry.h"
#include "ui/list/TextLine.h"

namespace zelnor::ui {
namespace {

constexpr ResultRowGeometry::Lines kLines{.name = 19, .folder = 16};

TEST(ResultRowGeometry, KeepsItsPartsApartAtAnyWidth) {
  for (const int width : {1200, 680, 460, 200}) {
    const QRect row(0, 96, width, ResultRowGeometry::height(kLines));
    const auto parts = ResultRowGeometry::of(row, kLines);
    EXPECT_FALSE(parts.name.intersects(parts.folder));
    EXPECT_EQ(parts.icon.size(), QSize(28, 28));
    EXPECT_EQ(parts.size.width(), width >= 460 ? 80 : 0);
    EXPECT_EQ(parts.date.width(), width >= 460 ? 110 : 0);
    EXPECT_TRUE(parts.date.isEmpty() || row.contains(parts.date));
    for (const auto& text : {parts.name, parts.folder}) {
      EXPECT_GT(text.left(), parts.icon.right());
      EXPECT_TRUE(text.isEmpty() || parts.size.isEmpty() || text.right() < parts.size.left());
    }
  }
}

TEST(ResultRowGeometry, IsHigherOnlyForTextsThatWouldNotFit) {
  EXPECT_EQ(ResultRowGeometry::height(kLines), 44);
  EXPECT_GT(ResultRowGeometry::height({.name = 24, .folder = 21}), 24 + 21);
}

TEST(ResultHeaderGeometry, PutsTitlesAboveTheirColumns) {
  for (const int width : {1200, 680, 460, 300, 200}) {
    const auto titles = ResultHeaderGeometry::of(QRect(0, 0, width, 26));
    const auto parts = ResultRowGeometry::of(QRect(0, 0, width, 44), kLines);
    EXPECT_EQ(titles.name.left(), parts.name.left());
    EXPECT_EQ(titles.size.right(), parts.size.right());
    EXPECT_EQ(titles.date.right(), parts.date.right());
    if (titles.location.isEmpty()) continue;
    EXPECT_LT(titles.name.right(), titles.location.left());
    EXPECT_TRUE(titles.size.isEmpty() || titles.location.right() < titles.size.left());
  }
  EXPECT_EQ(ResultHeaderGeometry::of(QRect(0, 0, 680, 26)).location.width(), 200);
  EXPECT_FALSE(ResultHeaderGeometry::of(QRect(0, 0, 460, 26)).location.isEmpty());
  EXPECT_TRUE(ResultHeaderGeometry::of(QRect(0, 0, 180, 26)).location.isEmpty());
}

TEST(TextLine, MeasuresNoMoreOfALongTextThanCouldBeSeen) {
  const auto text = QStringLiteral("short enough");
  EXPECT_EQ(withoutUnseenMiddle(text, 100), text);
  EXPECT_LE(withoutUnseenMiddle(QString(), 0).size(), 3);

  // What is shown in the end is what would be shown of all of it.
  const QFontMetrics metrics(type::font(type::kDetail));
  for (const auto& unit : {QStringLiteral("/iiiil"), QStringLiteral(u"/一个文件夹"),
                           QStringLiteral(u"/😀"), QStringLiteral(u"/😀a")}) {
    const auto path = unit.repeated(4096 / unit.size());
    for (const int width : {170, 171, 402, 922}) {
      const auto cut = withoutUnseenMiddle(path, width);
      EXPECT_LT(cut.size(), path.size());
      EXPECT_TRUE(cut.isValidUtf16());
      EXPECT_EQ(metrics.elidedText(cut, Qt::ElideMiddle, width),
                metrics.elidedText(path, Qt::ElideMiddle, width));
    }
  }
}

}  // namespace
}  // namespace zelnor::ui
