#include "ui/panel/StatusBarView.h"

#include <chrono>

#include <QAccessible>
#include <QHBoxLayout>
#include <QPainter>

#include "ui/Menu.h"
#include "ui/Palette.h"
#include "ui/PlainButton.h"
#include "ui/Spinner.h"
#include "ui/TextLabel.h"

namespace zelnor::ui {

namespace {

constexpr int kStatusHeight = 32;
constexpr int kStatusMargin = 12;
constexpr int kStatusGap = 6;
constexpr int kWarning = 13;
constexpr std::chrono::milliseconds kPatience{120};

QColor colorOf(StatusText::Tone tone) {
  switch (tone) {
    case StatusText::Tone::error:
      return palette::kRed;
    case StatusText::Tone::normal:
      return palette::kSecondaryText;
    case StatusText::Tone::faint:
      break;
  }
  return palette::kFaintText;
}

}  // namespace

/// Tells how the results are sorted, and opens the menu.
class SortButton final : public PlainButton {
 public:
  explicit SortButton(QWidget* parent) : PlainButton(QString(), parent) {
    setFont(type::font(type::kDetail, QFont::Medium));
  }
  [[nodiscard]] QSize sizeHint() const override {
    constexpr int kTall = 22;
    return {fontMetrics().horizontalAdvance(title()) + 2 * kSides, type::scaled(kTall)};
  }

 protected:
  void paint(QPainter& painter) override {
    painter.setPen(isDown() || underMouse() ? palette::kAccent.darker(120) : palette::kAccent);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, title());
  }

 private:
  static constexpr int kSides = 4;
};

StatusBarView::StatusBarView(QWidget* parent)
    : QWidget(parent),
      spinner_(new Spinner(this)),
      label_(new ElidedLabel(type::kDetail, palette::kFaintText, this, Qt::ElideRight)),
      warning_(
          makeSymbol(QLatin1String("exclamationmark.triangle"), kWarning, palette::kRed, this)),
      sort_(new SortButton(this)) {
  setFixedHeight(type::scaled(kStatusHeight));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(kStatusMargin, 0, kStatusMargin - 4, 0);
  layout->setSpacing(kStatusGap);
  layout->addWidget(spinner_);
  layout->addWidget(warning_);
  layout->addWidget(label_, /*stretch=*/1);
  layout->addWidget(sort_);
  label_->setAlignment(Qt::AlignVCenter | Qt::AlignLeft);
  connect(sort_, &QPushButton::clicked, this, &StatusBarView::showSortMenu);

  patience_.setSingleShot(true);
  patience_.setInterval(kPatience);
  connect(&patience_, &QTimer::timeout, this, [this] { showText(statusText(facts_)); });
  setSort(SortField::relevance, /*ascending=*/true);
  sort_->hide();
  showText(statusText(facts_));
}

void StatusBarView::setFacts(const StatusFacts& facts) {
  const bool searchBegins = facts.isSearching && !facts_.isSearching;
  facts_ = facts;
  sort_->setVisible(facts.resultCount >= 1);
  if (searchBegins) patience_.start();
  if (!facts.isSearching) patience_.stop();
  if (!patience_.isActive() || facts.error) showText(statusText(facts));
}

void StatusBarView::setSort(SortField field, bool ascending) {
  sortField_ = field;
  sortAscending_ = ascending;
  sort_->setTitle(sortTitle(field, ascending));
}

void StatusBarView::showSortMenu() {
  auto* menu = new Menu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const auto& item : kCases<SortField>) {
    const QLatin1String arrow(sortAscending_ ? "arrow.up" : "arrow.down");
    menu->add(item.value == sortField_ ? arrow : QLatin1String(),
              QStringLiteral(u"按%1排序").arg(displayText(label(item.value))),
              [this, field = item.value] { Q_EMIT sortChosen(field); });
  }
  const auto below = sort_->mapToGlobal(QPoint(sort_->width(), 0));
  menu->popup(below - QPoint(menu->sizeHint().width(), menu->sizeHint().height()));
}

void StatusBarView::showText(const StatusText& text) {
  spinner_->setVisible(text.isBusy);
  warning_->setVisible(text.tone == StatusText::Tone::error);
  setTextColor(*label_, colorOf(text.tone));
  if (label_->text() == text.text) return;
  label_->setText(text.text);
  if (text.isBusy) return;  // the numbers of what is under way would never end
  QAccessibleEvent announcement(label_, QAccessible::Alert);
  QAccessible::updateAccessibility(&announcement);
}

void StatusBarView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette::kBar);
}

}  // namespace zelnor::ui
