#include "ui/Sheet.h"

#include <utility>

#include <QAccessibleWidget>
#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "ui/Palette.h"
#include "ui/PlainButton.h"
#include "ui/Style.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr int kSheetTime = 180;  // ms
constexpr int kSlide = 14;
constexpr int kSheetPadding = 20;
constexpr int kPartSpacing = 16;
constexpr int kSmallestMargin = 8;
constexpr double kSheetRadius = 12;
constexpr float kDimness = 0.28F;
constexpr int kShadow = 10;

class Card final : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette::kOutline);
    painter.setBrush(palette::kPanel);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kSheetRadius,
                            kSheetRadius);
  }
};

class SheetButton final : public PlainButton {
 public:
  SheetButton(const QString& title, Sheet::Role role, QWidget* parent)
      : PlainButton(title, parent), role_(role) {
    setFocusPolicy(Qt::StrongFocus);
    setFont(type::font(type::kBody, role == Sheet::Role::cancel ? QFont::Normal : QFont::Medium));
  }
  [[nodiscard]] QSize sizeHint() const override {
    constexpr int kSides = 14;
    constexpr int kShortest = 72;
    constexpr int kHeight = 28;
    return {std::max(fontMetrics().horizontalAdvance(title()) + 2 * kSides, kShortest),
            type::scaled(kHeight)};
  }

 protected:
  void paint(QPainter& painter) override {
    auto fill = color();
    if (isDown()) {
      fill = fill.darker(115);
    } else if (underMouse()) {
      fill = fill.darker(105);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(rect(), cornerRadius(), cornerRadius());
    painter.setPen(isPlain() ? palette::kText : QColor(Qt::white));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, title());
  }
  [[nodiscard]] double cornerRadius() const override { return 7; }

 private:
  [[nodiscard]] bool isPlain() const {
    return role_ == Sheet::Role::cancel || role_ == Sheet::Role::normal;
  }
  [[nodiscard]] QColor color() const {
    if (isPlain()) return palette::kChip;
    return role_ == Sheet::Role::destructive ? palette::kRed : palette::kAccent;
  }

  Sheet::Role role_;
};

/// A sheet reads as the dialog that it is.
class AccessibleSheet final : public QAccessibleWidget {
 public:
  explicit AccessibleSheet(QWidget* sheet) : QAccessibleWidget(sheet, QAccessible::Dialog) {}

  [[nodiscard]] QAccessible::State state() const override {
    auto state = QAccessibleWidget::state();
    state.modal = true;
    state.active = true;
    return state;
  }
};

QAccessibleInterface* makeAccessible(const QString& /*className*/, QObject* object) {
  auto* sheet = qobject_cast<Sheet*>(object);
  return sheet != nullptr ? new AccessibleSheet(sheet) : nullptr;
}

}  // namespace

Sheet::Sheet(const QString& title, QWidget& panel)
    : QWidget(&panel), panel_(panel), card_(new Card(this)), parts_(new QVBoxLayout(card_)) {
  [[maybe_unused]] static const bool isKnown = (QAccessible::installFactory(makeAccessible), true);
  setAccessibleName(title);
  setFocusPolicy(Qt::StrongFocus);
  parts_->setContentsMargins(kSheetPadding, kSheetPadding, kSheetPadding, kSheetPadding);
  parts_->setSpacing(kPartSpacing);
  panel.installEventFilter(this);
  slide_.setEasingCurve(QEasingCurve::OutCubic);
  connect(&slide_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    shown_ = value.toDouble();
    placeCard();
    update();
  });
  hide();
}

PlainButton* Sheet::addButton(const QString& title, Role role, std::function<void()> pressed) {
  if (buttons_ == nullptr) {
    buttons_ = new QWidget(card_);
    auto* row = new QHBoxLayout(buttons_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addStretch();
    parts_->addWidget(buttons_);
  }
  auto* button = new SheetButton(title, role, buttons_);
  buttons_->layout()->addWidget(button);
  (role == Role::cancel ? cancelButton_ : defaultButton_) = button;
  connect(button, &QPushButton::clicked, this, [this, pressed = std::move(pressed)] {
    if (isClosing_) return;
    dismiss();
    if (pressed) pressed();
  });
  return button;
}

void Sheet::centreButtons() { static_cast<QHBoxLayout*>(buttons_->layout())->addStretch(); }

void Sheet::open() {
  focusBefore_ = panel_.window()->focusWidget();
  cover();
  show();
  raise();
  if (firstFocus_ == nullptr) {
    firstFocus_ = defaultButton_ != nullptr ? defaultButton_ : cancelButton_;
  }
  if (firstFocus_) firstFocus_->setFocus(Qt::OtherFocusReason);
  slide_.setStartValue(0.0);
  slide_.setEndValue(1.0);
  slide_.setDuration(motionTime(*this, kSheetTime));
  slide_.start();
}

void Sheet::cancel() {
  if (isClosing_) return;
  auto* button = cancelButton_ != nullptr ? cancelButton_ : defaultButton_;
  if (button != nullptr) {
    button->click();
  } else {
    dismiss();
  }
}

void Sheet::dismiss() {
  isClosing_ = true;
  panel_.removeEventFilter(this);
  hide();
  if (focusBefore_) focusBefore_->setFocus(Qt::OtherFocusReason);
  Q_EMIT closed();
  deleteLater();
}

bool Sheet::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &panel_ && event->type() == QEvent::Resize) cover();
  return QWidget::eventFilter(watched, event);
}

void Sheet::cover() {
  setGeometry(panel_.rect());
  placeCard();
}

/// In the middle and a little above it.
void Sheet::placeCard() {
  const auto space = size() - QSize(2 * kSmallestMargin, 2 * kSmallestMargin);
  const auto wanted = card_->sizeHint().boundedTo(space);
  const int top = std::max((height() - wanted.height()) * 2 / 5, kSmallestMargin);
  const auto slide = static_cast<int>((1 - shown_) * -kSlide);
  card_->setGeometry((width() - wanted.width()) / 2, top + slide, wanted.width(), wanted.height());
}

/// The keyboard stays in the sheet.
bool Sheet::focusNextPrevChild(bool next) {
  auto* const start = focusWidget() != nullptr ? focusWidget() : this;
  auto* at = start;
  do {
    at = next ? at->nextInFocusChain() : at->previousInFocusChain();
    const bool takesFocus = (at->focusPolicy() & Qt::TabFocus) != 0 && at->isVisible();
    if (at != this && isAncestorOf(at) && takesFocus) {
      at->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
      return true;
    }
  } while (at != start);
  return true;
}

/// No key goes on to what lies below.
void Sheet::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      cancel();
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (defaultButton_ != nullptr) defaultButton_->click();
      break;
    default:
      break;
  }
  event->accept();
}

void Sheet::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  QColor dim(Qt::black);
  dim.setAlphaF(kDimness * static_cast<float>(shown_));
  painter.fillRect(rect(), dim);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  for (int spread = kShadow; spread > 0; spread -= 2) {
    painter.setBrush(QColor(0, 0, 0, 6));
    painter.drawRoundedRect(
        QRectF(card_->geometry()).adjusted(-spread, -spread + 3, spread, spread + 3),
        kSheetRadius + spread, kSheetRadius + spread);
  }
}

}  // namespace zelnor::ui
