#include "ui/panel/PermissionGuideView.h"

#include <utility>

#include <QScrollArea>
#include <QVBoxLayout>

#include "ui/Palette.h"
#include "ui/PlainButton.h"
#include "ui/TextLabel.h"
#include "ui/panel/PermissionStep.h"

namespace zelnor::ui {

namespace {

constexpr int kSymbol = 56;
constexpr int kTextWidth = 400;
constexpr int kBesideText = 14;  // a scroll bar has room there
constexpr int kBetweenParts = 12;
constexpr int kBetweenSteps = 6;

QString guideTitle() { return QStringLiteral(u"需要全磁盘访问权限"); }

QLabel* makeParagraph(const QString& text, type::Size size, const QColor& color, QWidget* parent) {
  auto* paragraph = makeText(text, size, color, parent);
  paragraph->setWordWrap(true);
  paragraph->setAlignment(Qt::AlignHCenter);
  paragraph->setFixedWidth(type::scaled(kTextWidth));
  return paragraph;
}

QWidget* makeSteps(QWidget* parent) {
  auto* whole = new QWidget(parent);
  auto* steps = new QVBoxLayout(whole);
  steps->setContentsMargins(0, 0, 0, 0);
  steps->setSpacing(kBetweenSteps);
  int number = 0;
  for (const auto& text : {QStringLiteral(u"点击下方「打开系统设置」按钮"),
                           QStringLiteral(u"进入「隐私与安全性」→「完全磁盘访问权限」"),
                           QStringLiteral(u"找到「Zelnor」并打开开关"),
                           QStringLiteral(u"返回应用，开始建立文件索引")}) {
    steps->addWidget(new PermissionStep(++number, text, whole));
  }
  return whole;
}

/// All but the buttons; a panel that is too low for it scrolls it.
class Body final : public QScrollArea {
 public:
  explicit Body(QWidget* parent) : QScrollArea(parent), content_(new QWidget) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    fill();
    setWidget(content_);
    for (auto* surface : {viewport(), content_}) surface->setAutoFillBackground(false);
  }

  [[nodiscard]] QSize sizeHint() const override { return content_->sizeHint(); }
  [[nodiscard]] QSize minimumSizeHint() const override { return {content_->sizeHint().width(), 0}; }

 private:
  void fill() {
    auto* parts = new QVBoxLayout(content_);
    parts->setContentsMargins(kBesideText, 0, kBesideText, 0);
    parts->setSpacing(kBetweenParts);
    const auto add = [&](QWidget* part) { parts->addWidget(part, 0, Qt::AlignHCenter); };
    add(makeSymbol(QLatin1String("lock.shield"), kSymbol, palette::kAccent, content_));
    add(makeText(guideTitle(), type::kTitle, palette::kText, content_, QFont::DemiBold));
    add(makeParagraph(
        QStringLiteral(u"为了索引您 Mac 上的所有文件，Zelnor 需要「完全磁盘访问权限」。\n\n"
                       u"此权限仅用于建立本地文件索引，所有数据保存在本机，不会上传至任何服务器。"),
        type::kBody, palette::kText, content_));
    add(makeSteps(content_));
    add(makeParagraph(
        QStringLiteral(u"如未开启此权限，搜索范围将受限，部分目录下的文件可能搜索不到。"),
        type::kCaption, palette::kSecondaryText, content_));
  }

  QWidget* content_;
};

}  // namespace

PermissionGuideView::PermissionGuideView(std::function<void()> openSettings, QWidget& panel)
    : Sheet(guideTitle(), panel) {
  parts().addWidget(new Body(card()), /*stretch=*/1);
  addButton(QStringLiteral(u"稍后设置"), Role::cancel, {});
  addButton(QStringLiteral(u"打开系统设置"), Role::prominent, std::move(openSettings));
  centreButtons();
}

}  // namespace zelnor::ui
