#include "ui/panel/NoResultsView.h"

#include <array>

#include <QHBoxLayout>
#include <QStringView>
#include <QVBoxLayout>

#include "ui/Palette.h"
#include "ui/TextLabel.h"

namespace zelnor::ui {

namespace {
constexpr int kSpacing = 10;
constexpr int kHintSpacing = 4;
constexpr std::array<QStringView, 3> kHints{u"• 检查拼写或尝试其他关键词",
                                            u"• 使用通配符：report*2024",
                                            u"• 确认文件所在目录已加入索引范围"};
}  // namespace

NoResultsView::NoResultsView(QWidget* parent)
    : QWidget(parent), sentence_(new ElidedLabel(type::kLabel, palette::kSecondaryText, this)) {
  auto* hints = new QVBoxLayout;
  hints->setSpacing(kHintSpacing);
  for (const auto hint : kHints) {
    hints->addWidget(makeText(hint.toString(), type::kLabel, palette::kSecondaryText, this));
  }
  sentence_->setAlignment(Qt::AlignCenter);

  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(kSpacing);
  layout->addStretch();
  layout->addWidget(makeHeroSymbol(QLatin1String("doc.questionmark.ultralight"), this), 0,
                    Qt::AlignHCenter);
  layout->addWidget(
      makeText(QStringLiteral(u"未找到匹配文件"), type::kQuery, palette::kSecondaryText, this), 0,
      Qt::AlignHCenter);
  layout->addWidget(sentence_);
  auto* centered = new QHBoxLayout;
  centered->addStretch();
  centered->addLayout(hints);
  centered->addStretch();
  layout->addLayout(centered);
  layout->addStretch();
}

void NoResultsView::setQuery(const QString& query) {
  sentence_->setText(QStringLiteral(u"没有包含「%1」的文件").arg(query));
}

}  // namespace zelnor::ui
