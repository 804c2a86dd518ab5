#include "ui/form/FormSection.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "ui/Palette.h"
#include "ui/TextLabel.h"
#include "ui/form/Switch.h"

namespace zelnor::ui {

namespace {

constexpr int kSides = 12;
constexpr int kRowHeight = 36;
constexpr int kAboveAndBelow = 4;
constexpr double kRadius = 8;

class Card final : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette::kSeparator);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
  }
};

/// A switch is set by a press anywhere in its row.
class ControlRow final : public QWidget {
 public:
  ControlRow(QWidget* control, QWidget* parent)
      : QWidget(parent), switch_(qobject_cast<Switch*>(control)) {}

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    if (switch_ == nullptr) QWidget::mousePressEvent(event);
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (switch_ != nullptr && rect().contains(event->pos())) switch_->click();
  }

 private:
  Switch* switch_;
};

}  // namespace

FormSection::FormSection(const QString& title, QWidget* parent)
    : QWidget(parent), card_(new Card(this)), rows_(new QVBoxLayout(card_)) {
  rows_->setContentsMargins(kSides, 1, kSides, 1);
  rows_->setSpacing(0);
  auto* parts = new QVBoxLayout(this);
  parts->setContentsMargins(0, 0, 0, 0);
  parts->setSpacing(4);
  if (!title.isEmpty()) {
    auto* heading = makeText(title, type::kDetail, palette::kSecondaryText, this, QFont::DemiBold);
    heading->setContentsMargins(2, 0, 0, 0);
    parts->addWidget(heading);
    setAccessibleName(title);
  }
  parts->addWidget(card_);
}

void FormSection::addRow(QWidget* content) {
  if (rows_->count() > 0) rows_->addWidget(makeSeparator(Qt::Horizontal, card_));
  // Not a minimum of the content itself, which would take the place of what its layout needs.
  auto* row = new QWidget(card_);
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  line->addStrut(type::scaled(kRowHeight));
  line->addWidget(content);
  rows_->addWidget(row);
}

void FormSection::addRow(QLayout* parts) {
  auto* row = new QWidget(card_);
  parts->setContentsMargins(0, kAboveAndBelow, 0, kAboveAndBelow);
  row->setLayout(parts);
  addRow(row);
}

void FormSection::addRow(const QString& label, QWidget* control) {
  auto* row = new ControlRow(control, card_);
  auto* parts = new QHBoxLayout(row);
  parts->setContentsMargins(0, kAboveAndBelow, 0, kAboveAndBelow);
  parts->addWidget(makeText(label, type::kBody, palette::kText, row));
  parts->addStretch();
  parts->addWidget(control);
  addRow(row);
}

void FormSection::clear() {
  while (auto* item = rows_->takeAt(0)) {
    if (auto* row = item->widget()) {
      row->hide();  // it is deleted later, and must not be seen under the new rows until then
      row->deleteLater();
    }
    delete item;  // NOLINT(cppcoreguidelines-owning-memory): the layout has let go of it
  }
}

}  // namespace zelnor::ui
