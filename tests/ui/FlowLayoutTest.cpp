#include <gtest/gtest.h>

#include <QWidget>

#include "ui/FlowLayout.h"

namespace zelnor::ui {
namespace {

class FlowLayoutTest : public testing::Test {
 protected:
  QWidget* add(int width, int height = 10) {
    auto* item = new QWidget;
    item->setFixedSize(width, height);
    flow_->addWidget(item);
    item->show();
    return item;
  }

  QWidget page_;
  FlowLayout* flow_ = new FlowLayout(/*spacing=*/8, &page_);
};

TEST_F(FlowLayoutTest, GoesOnBelowWhereTheNextItemDoesNotFit) {
  EXPECT_EQ(flow_->sizeThatFits(100), QSize(100, 0));
  add(60);
  auto* second = add(30, 20);
  auto* third = add(30);
  flow_->setGeometry({5, 7, 100, 100});
  EXPECT_EQ(second->pos(), QPoint(73, 7));
  EXPECT_EQ(third->pos(), QPoint(5, 7 + 20 + 8));
  EXPECT_EQ(flow_->sizeThatFits(100), QSize(100, 20 + 8 + 10));
  EXPECT_EQ(flow_->sizeThatFits(98).height(), 38);
  EXPECT_EQ(flow_->sizeThatFits(97).height(), 10 + 8 + 20);
  EXPECT_EQ(flow_->sizeThatFits(0), QSize(0, 10 + 8 + 20 + 8 + 10));  // a line each
}

TEST_F(FlowLayoutTest, PlacesWhatIsTooWideOnALineOfItsOwn) {
  auto* wide = add(150);
  auto* next = add(10);
  flow_->setGeometry({0, 0, 100, 100});
  EXPECT_EQ(wide->geometry(), QRect(0, 0, 150, 10));
  EXPECT_EQ(next->pos(), QPoint(0, 18));
}

}  // namespace
}  // namespace zelnor::ui
