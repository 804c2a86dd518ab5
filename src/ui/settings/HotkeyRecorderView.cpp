#include "ui/settings/HotkeyRecorderView.h"

#include <optional>

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

#include "platform/KeyCodes.h"
#include "ui/Focus.h"
#include "ui/Palette.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

using Config = platform::HotkeyConfiguration;

constexpr QSize kSize(180, 28);
constexpr double kRadius = 6;

std::uint32_t modifiersOf(Qt::KeyboardModifiers held) {
  std::uint32_t modifiers = 0;
  if (held.testFlag(Qt::MetaModifier)) modifiers |= Config::kCommand;
  if (held.testFlag(Qt::AltModifier)) modifiers |= Config::kOption;
  if (held.testFlag(Qt::ControlModifier)) modifiers |= Config::kControl;
  if (held.testFlag(Qt::ShiftModifier)) modifiers |= Config::kShift;
  return modifiers;
}

/// Nothing for a key without a position of its own on the keyboard that the combination names.
std::optional<std::uint32_t> positionOf(const QKeyEvent& event) {
  const auto scanCode = event.nativeScanCode();
  if (scanCode < platform::kX11Offset) return std::nullopt;
  return platform::virtualFromEvdev(scanCode - platform::kX11Offset);
}

}  // namespace

HotkeyRecorderView::HotkeyRecorderView(const Config& config, QWidget* parent)
    : QWidget(parent), currentConfig_(config) {
  setFocusPolicy(Qt::StrongFocus);
  setFont(type::font(type::kBody));
  setCursor(Qt::PointingHandCursor);
  // The keys themselves are wanted, not what an input method makes of them.
  setAttribute(Qt::WA_InputMethodEnabled, false);
  setFixedSize(sizeHint());
  describe();
}

QSize HotkeyRecorderView::sizeHint() const {
  return {type::scaled(kSize.width()), type::scaled(kSize.height())};
}

void HotkeyRecorderView::setCurrentConfig(const Config& config) {
  currentConfig_ = config;
  describe();
}

void HotkeyRecorderView::describe() {
  setAccessibleName(QStringLiteral(u"全局唤起快捷键：") + text());
  update();
}

QString HotkeyRecorderView::text() const {
  return isRecording_ ? QStringLiteral(u"按下快捷键...（Esc 取消）")
                      : QString::fromStdString(currentConfig_.displayString());
}

void HotkeyRecorderView::setRecording(bool isRecording) {
  if (std::exchange(isRecording_, isRecording) == isRecording) return;
  if (isRecording) {
    qApp->installEventFilter(this);
  } else {
    qApp->removeEventFilter(this);
  }
  describe();
  Q_EMIT isRecordingChanged(isRecording);
}

/// A press elsewhere ends the recording, also on what does not take the keyboard.
bool HotkeyRecorderView::eventFilter(QObject* watched, QEvent* event) {
  const bool isPressElsewhere =
      event->type() == QEvent::MouseButtonPress && watched->isWidgetType() && watched != this;
  if (isPressElsewhere) setRecording(false);
  return QWidget::eventFilter(watched, event);
}

/// While recording every key is ours, also those that are shortcuts elsewhere or move the focus.
bool HotkeyRecorderView::event(QEvent* event) {
  if (isRecording_ && event->type() == QEvent::ShortcutOverride) {
    event->accept();
    return true;
  }
  if (isRecording_ && event->type() == QEvent::KeyPress) {
    keyPressEvent(static_cast<QKeyEvent*>(event));
    return true;
  }
  return QWidget::event(event);
}

void HotkeyRecorderView::keyPressEvent(QKeyEvent* event) {
  if (isRecording_) {
    record(*event);
  } else if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return) {
    setRecording(true);
  } else {
    QWidget::keyPressEvent(event);
  }
}

void HotkeyRecorderView::record(const QKeyEvent& event) {
  if (event.key() == Qt::Key_Escape) {
    setRecording(false);
    return;
  }
  const auto keyCode = positionOf(event);
  const auto modifiers = modifiersOf(event.modifiers());
  // A modifier alone has no position that can be recorded.
  if (!keyCode || modifiers == 0) return;
  currentConfig_ = {.keyCode = *keyCode, .modifiers = modifiers};
  // First, or the old combination would be taken up again for a moment.
  Q_EMIT recorded(currentConfig_);
  setRecording(false);
}

void HotkeyRecorderView::mousePressEvent(QMouseEvent* /*event*/) {
  setFocus(Qt::MouseFocusReason);
  setRecording(true);
}

void HotkeyRecorderView::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  setRecording(false);
}

void HotkeyRecorderView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  setRecording(false);
}

void HotkeyRecorderView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(palette::kSeparator);
  painter.setBrush(isRecording_ ? palette::kSelection : QColor(Qt::white));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
  painter.setFont(font());
  painter.setPen(isRecording_ ? palette::kSecondaryText : palette::kText);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
  if (showsFocus(*this) && !isRecording_) paintFocusRing(painter, rect(), kRadius);
}

}  // namespace zelnor::ui
