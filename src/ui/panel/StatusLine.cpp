#include "ui/panel/StatusLine.h"

#include <chrono>

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QToolButton>

#include "ui/PageText.h"
#include "ui/Palette.h"
#include "ui/Spinner.h"

namespace zelnor::ui {

namespace {

constexpr int kHeight = 32;
constexpr int kFontSize = 11;
constexpr int kMargin = 14;
constexpr std::chrono::milliseconds kPatience{120};

QColor colorOf(StatusText::Tone tone) {
  switch (tone) {
    case StatusText::Tone::error:
      return palette::kError;
    case StatusText::Tone::normal:
      return palette::kSecondaryText;
    case StatusText::Tone::faint:
      break;
  }
  return palette::kFaintText;
}

QToolButton* makeSortButton(QWidget* parent) {
  auto* button = new QToolButton(parent);
  button->setPopupMode(QToolButton::InstantPopup);
  button->setAutoRaise(true);
  button->setStyleSheet(QStringLiteral("QToolButton { border: none; padding: 2px 4px; color: %1 }"
                                       "QToolButton::menu-indicator { image: none }")
                            .arg(palette::kAccent.name()));
  QFont font = button->font();
  font.setPixelSize(kFontSize);
  font.setWeight(QFont::Medium);
  button->setFont(font);
  button->setCursor(Qt::PointingHandCursor);
  button->setMenu(new QMenu(button));
  return button;
}

}  // namespace

StatusLine::StatusLine(QWidget* parent)
    : QWidget(parent),
      spinner_(new Spinner(this)),
      label_(makeText({}, kFontSize, palette::kFaintText, this)),
      sort_(makeSortButton(this)) {
  setFixedHeight(kHeight);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(kMargin, 0, kMargin, 0);
  layout->setSpacing(6);
  layout->addWidget(spinner_);
  layout->addWidget(label_, /*stretch=*/1);
  layout->addWidget(sort_);
  label_->setMinimumWidth(0);
  label_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

  for (const auto& item : kCases<SortField>) {
    auto* action = sort_->menu()->addAction(QString());
    action->setData(static_cast<int>(item.value));
    connect(action, &QAction::triggered, this,
            [this, field = item.value] { Q_EMIT sortChosen(field); });
  }
  patience_.setSingleShot(true);
  patience_.setInterval(kPatience);
  connect(&patience_, &QTimer::timeout, this, [this] { showText(statusText(facts_)); });
  setSort(SortField::relevance, /*ascending=*/true);
  showText(statusText(facts_));
}

void StatusLine::setFacts(const StatusFacts& facts) {
  const bool searchBegins = facts.isSearching && !facts_.isSearching;
  facts_ = facts;
  sort_->setVisible(facts.resultCount >= 1);
  if (searchBegins) patience_.start();
  if (!facts.isSearching) patience_.stop();
  if (!patience_.isActive()) showText(statusText(facts));
}

void StatusLine::setSort(SortField field, bool ascending) {
  sort_->setText(sortTitle(field, ascending));
  for (auto* action : sort_->menu()->actions()) {
    const auto shown = static_cast<SortField>(action->data().toInt());
    const auto title = QStringLiteral(u"按%1排序").arg(displayText(label(shown)));
    // What follows a tab stands at the right edge of the menu.
    const QString arrow = ascending ? QStringLiteral(u"\t↑") : QStringLiteral(u"\t↓");
    action->setText(shown == field ? title + arrow : title);
  }
}

void StatusLine::showText(const StatusText& text) {
  spinner_->setVisible(text.isBusy);
  QPalette colors = label_->palette();
  colors.setColor(QPalette::WindowText, colorOf(text.tone));
  label_->setPalette(colors);
  label_->setText(text.tone == StatusText::Tone::error ? QStringLiteral(u"⚠ ") + text.text
                                                       : text.text);
  label_->setToolTip(text.tone == StatusText::Tone::error ? text.text.toHtmlEscaped() : QString());
}

void StatusLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette::kBar);
}

}  // namespace zelnor::ui
