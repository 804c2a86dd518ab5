#include <algorithm>

#include <gtest/gtest.h>

#include <QPainter>
#include <QStandardItemModel>
#include <QStyleOptionViewItem>

#include "results/FileIcons.h"
#include "store/FileRecord.h"
#include "ui/DisplayText.h"
#include "ui/Palette.h"
#include "ui/list/ResultDelegate.h"
#include "ui/list/ResultListModel.h"
#include "ui/list/RowHighlights.h"

namespace zelnor::ui {
namespace {

class FakeIcons final : public FileIcons {
 public:
  QImage icon(const FileRecord& /*record*/, int pixels) override {
    asked = pixels;
    return picture;
  }
  QImage picture;
  int asked = 0;
};

/// One row, painted into the middle of a green picture three rows high.
class ResultDelegateTest : public testing::Test {
 protected:
  static constexpr int kWidth = 680;

  QImage painted(double ratio, int rowHeight) {
    QStandardItemModel model(1, 1);
    const auto index = model.index(0, 0);
    model.setData(index, displayText(record_.name), Qt::DisplayRole);
    model.setData(index, displayFolder(record_.path), ResultListModel::folderRole);
    model.setData(index, QVariant::fromValue<const FileRecord*>(&record_),
                  ResultListModel::recordRole);
    QImage image(QSize(kWidth, 3 * height()) * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::green);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = QRect(0, height(), kWidth, rowHeight);
    option.widget = &view_;
    delegate_.paint(&painter, option, index);
    return image;
  }
  QImage painted(double ratio = 1) { return painted(ratio, height()); }
  [[nodiscard]] int height() const { return delegate_.sizeHint({}, {}).height(); }
  [[nodiscard]] static QRect iconIn(int top) { return {12, top + 8, 28, 28}; }

  QWidget view_;
  RowHighlights highlights_{view_};
  FakeIcons icons_;
  ResultDelegate delegate_{highlights_, &icons_, nullptr};
  FileRecord record_{.id = 1, .name = "name", .path = "/folder/name"};
};

TEST_F(ResultDelegateTest, ShowsTheColourOfTheKindUntilThePictureIsKnown) {
  const auto corner = [this](const QImage& image) {
    return image.pixel(iconIn(height()).topLeft() + QPoint(5, 5));
  };
  record_.name = "a.TS";  // in several kinds, of which video is the first
  EXPECT_EQ(corner(painted()), QColor::fromRgbF(0.55F, 0.32F, 0.90F).rgb());
  record_.kind = FileKind::directory;
  EXPECT_EQ(corner(painted()), QColor::fromRgbF(0.35F, 0.60F, 0.95F).rgb());
  EXPECT_EQ(icons_.asked, 28);

  icons_.picture = QImage(64, 32, QImage::Format_RGB32);
  icons_.picture.fill(Qt::red);
  const auto image = painted(/*ratio=*/2);
  EXPECT_EQ(icons_.asked, 56);
  const auto box = iconIn(height());
  EXPECT_EQ(image.pixelColor(box.center() * 2), QColor(Qt::red));
  EXPECT_EQ(image.pixel(QPoint(box.center().x(), box.top() + 3) * 2), palette::kPanel.rgb());
}

TEST_F(ResultDelegateTest, KeepsToItsRowWhateverTheName) {
  record_.name = "Z";
  for (int i = 0; i < 80; ++i) record_.name += "\u030D\u0330\u0E17\u0E34\u0E48";
  record_.path = "/" + record_.name + "/" + std::string(4000, 'x');
  const auto isGreen = [](const QImage& image, int y) {
    const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    return std::all_of(line, line + kWidth, [](QRgb pixel) { return QColor(pixel) == Qt::green; });
  };
  for (const int rowHeight : {height(), 10}) {  // no letter fits into the low one
    const auto image = painted(/*ratio=*/1, rowHeight);
    EXPECT_TRUE(isGreen(image, height() - 1));
    EXPECT_TRUE(isGreen(image, height() + rowHeight));
  }
  const auto image = painted();
  // Nothing reaches into the columns beside it.
  for (int x = 460; x < kWidth; ++x) {
    for (int y = height(); y < 2 * height(); ++y) {
      ASSERT_EQ(image.pixel(x, y), palette::kPanel.rgb());
    }
  }
}

}  // namespace
}  // namespace zelnor::ui
