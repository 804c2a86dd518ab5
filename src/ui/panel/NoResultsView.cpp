#include "ui/panel/NoResultsView.h"

#include <array>

#include <QHBoxLayout>
#include <QStringView>
#include <QVBoxLayout>

#include "ui/Palette.h"
#include "ui/TextLabel.h"

namespace zelnor::ui {

namespace {
constexpr int kNoResultsSpacing = 10;
constexpr int kLineSpacing = 4;
constexpr std::array<QStringView, 3> kHints{u"• 检查拼写或尝试其他关键词",
                                            u"• 使用通配符：report*2024",
                                            u"• 确认文件所在目录已加入索引范围"};
/// Lines that begin below each other, in the middle.
QLayout* makeHints(QWidget* parent) {
  auto* lines = new QVBoxLayout;
  lines->setSpacing(kLineSpacing);
  for (const auto hint : kHints) {
    lines->addWidget(makeText(hint.toString(), type::kLabel, palette::kSecondaryText, parent));
  }
  auto* centered = new QHBoxLayout;
  centered->addStretch();
  centered->addLayout(lines);
  centered->addStretch();
  return centered;
}

}  // namespace

NoResultsView::NoResultsView(QWidget* parent)
    : QScrollArea(parent),
      sentence_(new ElidedLabel(type::kLabel, palette::kSecondaryText, nullptr)) {
  setFrameShape(NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setSpacing(kNoResultsSpacing);
  layout->addStretch();
  layout->addWidget(makeHeroSymbol(QLatin1String("doc.questionmark.ultralight"), page), 0,
                    Qt::AlignHCenter);
  layout->addWidget(
      makeText(QStringLiteral(u"未找到匹配文件"), type::kQuery, palette::kSecondaryText, page), 0,
      Qt::AlignHCenter);
  sentence_->setAlignment(Qt::AlignCenter);
  layout->addWidget(sentence_);
  layout->addLayout(makeHints(page));
  layout->addStretch();
  setWidget(page);
}

void NoResultsView::setQuery(const QString& query) {
  sentence_->setText(QStringLiteral(u"没有包含「%1」的文件").arg(query));
}

}  // namespace zelnor::ui
