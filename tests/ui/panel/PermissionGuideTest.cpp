#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>

#include "tests/ui/panel/PanelFixture.h"
#include "ui/panel/PermissionGuideView.h"
#include "ui/panel/PermissionStep.h"

namespace zelnor::ui {
namespace {

using testing::ElementsAre;

class PermissionGuideTest : public PanelFixture {
 protected:
  void show() {
    view_->showPermissionGuide([this] { ++opened_; });
    settle();
  }
  [[nodiscard]] bool isShown() const {
    const auto* guide = find<PermissionGuideView>();
    return guide != nullptr && guide->isVisible();
  }
  void settleDeletions() {
    settle();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  int opened_ = 0;
};

TEST_F(PermissionGuideTest, OpensTheSettingsAndIsDone) {
  const std::vector<std::function<void()>> ways = {
      [] { press(Qt::Key_Return, Qt::ControlModifier); },
      [this] {
        button(u"稍后设置")->setFocus(Qt::TabFocusReason);
        press(Qt::Key_Return, Qt::ControlModifier);
      },
      [this] { click(u"打开系统设置"); }};
  int expected = 0;
  for (const auto& openSettings : ways) {
    show();
    ASSERT_TRUE(isShown());
    openSettings();
    settleDeletions();
    EXPECT_EQ(opened_, ++expected);
    EXPECT_FALSE(isShown());
    EXPECT_TRUE(field_->hasFocus());
  }
}

TEST_F(PermissionGuideTest, ClosesWithoutOpeningAnything) {
  for (const auto& close : std::vector<std::function<void()>>{[this] { click(u"稍后设置"); },
                                                              [] { press(Qt::Key_Escape); },
                                                              [] {
                                                                press(Qt::Key_Tab);
                                                                press(Qt::Key_Space);
                                                              }}) {
    show();
    close();
    settleDeletions();
    EXPECT_FALSE(isShown());
    EXPECT_TRUE(view_->isVisible());
  }
  EXPECT_EQ(opened_, 0);
}

TEST_F(PermissionGuideTest, IsThereOnceHoweverOftenItIsAskedFor) {
  show();
  show();
  EXPECT_EQ(view_->findChildren<PermissionGuideView*>().size(), 1);
}

TEST_F(PermissionGuideTest, NamesTheStepsInOrderAndKeepsItsButtonsInTheSmallestPanel) {
  view_->resize(SearchView::kSmallest);
  show();
  std::vector<std::string> steps;
  for (const auto* step : find<PermissionGuideView>()->findChildren<PermissionStep*>()) {
    steps.push_back(step->accessibleName().toStdString());
  }
  EXPECT_THAT(steps, ElementsAre("1. 点击下方「打开系统设置」按钮",
                                 "2. 进入「隐私与安全性」→「完全磁盘访问权限」",
                                 "3. 找到「Zelnor」并打开开关", "4. 返回应用，开始建立文件索引"));
  for (const auto title : {u"稍后设置", u"打开系统设置"}) {
    const auto* found = button(title);
    ASSERT_NE(found, nullptr);
    const QRect place(found->mapTo(view_.get(), QPoint()), found->size());
    EXPECT_TRUE(view_->rect().contains(place));
    EXPECT_EQ(found->visibleRegion().boundingRect(), found->rect());
  }
  const auto* row = button(u"稍后设置")->parentWidget();
  EXPECT_NEAR(row->childrenRect().center().x(), row->rect().center().x(), 1);
}

}  // namespace
}  // namespace zelnor::ui
