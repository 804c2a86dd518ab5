#include "ui/panel/SearchField.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

#include "ui/Glyphs.h"
#include "ui/Palette.h"

namespace zelnor::ui {

namespace {

constexpr int kHeight = 44;
constexpr int kFontSize = 15;
constexpr int kMagnifierSize = 18;
constexpr int kMagnifierLeft = 16;
constexpr int kTextLeft = kMagnifierLeft + kMagnifierSize + 10;
constexpr int kClearSize = 16;

class ClearButton final : public QAbstractButton {
 public:
  explicit ClearButton(QWidget* parent) : QAbstractButton(parent) {
    setFixedSize(kClearSize, kClearSize);
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(QStringLiteral(u"清除"));
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(underMouse() ? palette::kSecondaryText : palette::kFaintText);
    painter.drawEllipse(rect());
    paintCross(painter, QRectF(rect()).adjusted(4.5, 4.5, -4.5, -4.5), Qt::white);
  }
};

bool leavesDownwards(int key) {
  return key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter;
}

}  // namespace

SearchField::SearchField(QWidget* parent)
    : QFrame(parent), edit_(new QLineEdit(this)), clearButton_(new ClearButton(this)) {
  setFixedHeight(kHeight);
  setCursor(Qt::IBeamCursor);
  setFocusProxy(edit_);

  QFont font = edit_->font();
  font.setPixelSize(kFontSize);
  edit_->setFont(font);
  edit_->setFrame(false);
  edit_->setStyleSheet(QStringLiteral("background: transparent"));
  edit_->setPlaceholderText(QStringLiteral(u"搜索文件、文件夹..."));
  edit_->installEventFilter(this);
  clearButton_->hide();

  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(kTextLeft, 0, kMagnifierLeft, 0);
  layout->addWidget(edit_);
  layout->addWidget(clearButton_);

  connect(edit_, &QLineEdit::textChanged, clearButton_,
          [this](const QString& text) { clearButton_->setVisible(!text.isEmpty()); });
  connect(edit_, &QLineEdit::textEdited, this, &SearchField::edited);
  connect(static_cast<ClearButton*>(clearButton_), &QAbstractButton::clicked, this,
          &SearchField::clear);
}

QString SearchField::text() const { return edit_->text(); }

void SearchField::setText(const QString& text) {
  if (text != edit_->text()) edit_->setText(text);
}

void SearchField::insert(const QString& typed) {
  edit_->setFocus();
  edit_->insert(typed);
  Q_EMIT edited(edit_->text());
}

void SearchField::clear() {
  edit_->setFocus();
  if (edit_->text().isEmpty()) return;
  edit_->clear();
  Q_EMIT edited(QString());
}

bool SearchField::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
  if (event->type() != QEvent::KeyPress) return QFrame::eventFilter(watched, event);
  const auto* key = static_cast<QKeyEvent*>(event);
  if (!leavesDownwards(key->key())) return false;
  Q_EMIT leftDownwards();
  return true;
}

void SearchField::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(edit_->hasFocus() ? palette::kAccent : palette::kOutline, 1));
  painter.setBrush(Qt::white);
  const QRectF pill = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
  const QRectF magnifier(kMagnifierLeft, (kHeight - kMagnifierSize) / 2.0, kMagnifierSize,
                         kMagnifierSize);
  paintMagnifier(painter, magnifier, palette::kSecondaryText);
}

}  // namespace zelnor::ui
