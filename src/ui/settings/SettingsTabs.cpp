#include "ui/settings/SettingsTabs.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

#include "ui/Palette.h"
#include "ui/PlainButton.h"
#include "ui/Symbol.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr int kHeight = 44;
constexpr int kTabHeight = 28;
constexpr int kTabSides = 14;
constexpr int kSymbol = 13;
constexpr int kAfterSymbol = 6;
constexpr int kBetweenTabs = 6;

class SettingsTab final : public PlainButton {
 public:
  SettingsTab(QLatin1String symbol, const QString& title, QWidget* parent)
      : PlainButton(title, parent), symbol_(symbol) {
    setCheckable(true);
    setFont(type::font(type::kLabel, QFont::Medium));
  }

  [[nodiscard]] QSize sizeHint() const override {
    const int text = fontMetrics().horizontalAdvance(title());
    return {2 * kTabSides + type::scaled(kSymbol) + kAfterSymbol + text, type::scaled(kTabHeight)};
  }

 protected:
  void paint(QPainter& painter) override {
    if (isChecked() || underMouse()) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(isChecked() ? palette::kChip : palette::kHover);
      painter.drawRoundedRect(rect(), cornerRadius(), cornerRadius());
    }
    const auto color = isChecked() ? palette::kAccent : palette::kSecondaryText;
    const int side = type::scaled(kSymbol);
    const QRectF symbol(kTabSides, (height() - side) / 2.0, side, side);
    paintSymbol(painter, symbol, symbol_, color);
    painter.setPen(color);
    painter.drawText(rect().adjusted(kTabSides + side + kAfterSymbol, 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, title());
  }
  [[nodiscard]] double cornerRadius() const override { return 7; }

 private:
  QLatin1String symbol_;
};

}  // namespace

SettingsTabs::SettingsTabs(QWidget* parent) : QWidget(parent) {
  setFixedHeight(type::scaled(kHeight));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(kBetweenTabs);
  row->addStretch();
  row->addStretch();
  connect(&group_, &QButtonGroup::idClicked, this, &SettingsTabs::chosen);
}

void SettingsTabs::addTab(QLatin1String symbol, const QString& title) {
  auto* tab = new SettingsTab(symbol, title, this);
  const auto count = static_cast<int>(group_.buttons().size());
  group_.addButton(tab, count);
  static_cast<QHBoxLayout*>(layout())->insertWidget(count + 1, tab);
}

void SettingsTabs::choose(int page) { group_.button(page)->setChecked(true); }

void SettingsTabs::keyPressEvent(QKeyEvent* event) {
  int step = 0;
  if (event->key() == Qt::Key_Right) step = 1;
  if (event->key() == Qt::Key_Left) step = -1;
  auto* neighbour = group_.button(group_.checkedId() + step);
  if (step == 0 || neighbour == nullptr) {
    QWidget::keyPressEvent(event);
    return;
  }
  neighbour->setFocus();
  neighbour->click();
}

void SettingsTabs::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette::kBar);
  painter.fillRect(QRect(0, height() - 1, width(), 1), palette::kSeparator);
}

}  // namespace zelnor::ui
