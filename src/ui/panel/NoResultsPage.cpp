#include "ui/panel/NoResultsPage.h"

#include <QLabel>
#include <QVBoxLayout>

#include "ui/PageText.h"
#include "ui/Palette.h"

namespace zelnor::ui {

NoResultsPage::NoResultsPage(QWidget* parent)
    : QWidget(parent), sentence_(makeText({}, 12, palette::kText, this)) {
  sentence_->setWordWrap(true);
  sentence_->setAlignment(Qt::AlignCenter);
  auto* hints = makeText(QStringLiteral(u"• 检查拼写或尝试其他关键词\n• 使用通配符：report*2024\n• "
                                        u"确认文件所在目录已加入索引范围"),
                         12, palette::kSecondaryText, this);

  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(10);
  layout->addStretch();
  layout->addWidget(makeMagnifier(this), 0, Qt::AlignHCenter);
  layout->addWidget(makeText(QStringLiteral(u"未找到匹配文件"), 15, palette::kSecondaryText, this),
                    0, Qt::AlignHCenter);
  layout->addWidget(sentence_);
  layout->addSpacing(6);
  layout->addWidget(hints, 0, Qt::AlignHCenter);
  layout->addStretch();
}

void NoResultsPage::setQuery(const QString& query) {
  sentence_->setText(QStringLiteral(u"没有包含「%1」的文件").arg(query));
}

}  // namespace zelnor::ui
