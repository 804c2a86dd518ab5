#include "ui/panel/StartPage.h"

#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include "ui/DisplayText.h"
#include "ui/PageText.h"
#include "ui/Palette.h"

namespace zelnor::ui {

namespace {

constexpr int kRowHeight = 38;
constexpr int kRowFont = 13;
constexpr int kDotLeft = 22;
constexpr int kDotSize = 10;
constexpr int kTextLeft = 46;
constexpr int kHintTop = 60;

/// A dot and the text that was searched for.
class RecentDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    if (option.state.testAnyFlags(QStyle::State_Selected | QStyle::State_MouseOver)) {
      const bool selected = option.state.testFlag(QStyle::State_Selected);
      painter->setBrush(selected ? palette::kSelection : palette::kHover);
      painter->drawRoundedRect(option.rect.adjusted(8, 1, -8, -1), 6, 6);
    }
    QColor dot = palette::kFaintText;
    dot.setAlphaF(0.4F);
    painter->setBrush(dot);
    painter->drawEllipse(option.rect.left() + kDotLeft, option.rect.center().y() - kDotSize / 2,
                         kDotSize, kDotSize);
    painter->setFont(option.font);
    painter->setPen(palette::kSecondaryText);
    const QRect text = option.rect.adjusted(kTextLeft, 0, -kDotLeft, 0);
    painter->drawText(
        text, Qt::AlignVCenter | Qt::TextSingleLine,
        option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, text.width()));
    painter->restore();
  }
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& /*index*/) const override {
    return {option.rect.width(), kRowHeight};
  }
};

QListWidget* makeList(QWidget* parent) {
  auto* list = new QListWidget(parent);
  list->setItemDelegate(new RecentDelegate(list));
  list->setFrameShape(QFrame::NoFrame);
  list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list->setMouseTracking(true);
  list->setCursor(Qt::PointingHandCursor);
  QFont font = list->font();
  font.setPixelSize(kRowFont);
  list->setFont(font);
  return list;
}

QWidget* makeHint(QWidget* parent) {
  auto* page = new QWidget(parent);
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, kHintTop, 0, 0);
  layout->setSpacing(12);
  layout->addWidget(makeMagnifier(page), 0, Qt::AlignHCenter);
  layout->addWidget(
      makeText(QStringLiteral(u"输入关键词搜索文件"), 15, palette::kSecondaryText, page), 0,
      Qt::AlignHCenter);
  layout->addWidget(makeText(QStringLiteral(u"支持文件名、通配符（* ?）、正则（r:...）"), 12,
                             palette::kFaintText, page),
                    0, Qt::AlignHCenter);
  layout->addStretch();
  return page;
}

}  // namespace

StartPage::StartPage(QWidget* parent)
    : QStackedWidget(parent),
      hint_(makeHint(this)),
      recent_(new QWidget(this)),
      list_(makeList(recent_)) {
  auto* layout = new QVBoxLayout(recent_);
  layout->setContentsMargins(0, 14, 0, 0);
  layout->setSpacing(6);
  auto* header =
      makeText(QStringLiteral(u"最近搜索"), 11, palette::kFaintText, recent_, QFont::DemiBold);
  header->setContentsMargins(20, 0, 20, 0);
  layout->addWidget(header);
  layout->addWidget(list_);
  addWidget(hint_);
  addWidget(recent_);

  const auto choose = [this](const QListWidgetItem* item) {
    Q_EMIT chosen(item->data(Qt::UserRole).toString());
  };
  connect(list_, &QListWidget::itemClicked, this, choose);
  connect(list_, &QListWidget::itemActivated, this, choose);
}

void StartPage::setRecentSearches(const std::vector<std::string>& texts) {
  list_->clear();
  for (const auto& text : texts) {
    auto* item = new QListWidgetItem(displayText(text), list_);
    item->setData(Qt::UserRole, QString::fromStdString(text));
  }
  setCurrentWidget(texts.empty() ? hint_ : recent_);
}

void StartPage::enter() {
  if (list_->count() == 0) return;
  list_->setFocus();
  list_->setCurrentRow(0);
}

}  // namespace zelnor::ui
