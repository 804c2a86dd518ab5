#include "ui/panel/TypeChips.h"

#include <array>

#include <QAbstractButton>
#include <QButtonGroup>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QPainter>

#include "ui/DisplayText.h"
#include "ui/Palette.h"

namespace zelnor::ui {

namespace {

constexpr int kRowHeight = 40;
constexpr int kChipHeight = 26;
constexpr int kChipPadding = 12;
constexpr int kFontSize = 12;
constexpr std::array kChips{FileTypeCategory::all,   FileTypeCategory::folder,
                            FileTypeCategory::image, FileTypeCategory::document,
                            FileTypeCategory::video, FileTypeCategory::audio,
                            FileTypeCategory::code};

class Chip final : public QAbstractButton {
 public:
  Chip(const QString& title, QWidget* parent) : QAbstractButton(parent) {
    setText(title);
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    QFont chipFont = font();
    chipFont.setPixelSize(kFontSize);
    chipFont.setWeight(QFont::Medium);
    setFont(chipFont);
    setFixedSize(QFontMetrics(chipFont).horizontalAdvance(title) + 2 * kChipPadding, kChipHeight);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasFocus() ? QPen(palette::kAccent.darker()) : QPen(Qt::NoPen));
    painter.setBrush(background());
    const QRectF shape = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(shape, shape.height() / 2, shape.height() / 2);
    painter.setPen(isChecked() ? QColor(Qt::white) : palette::kText);
    painter.drawText(rect(), Qt::AlignCenter, text());
  }
  void enterEvent(QEnterEvent* /*event*/) override { update(); }
  void leaveEvent(QEvent* /*event*/) override { update(); }

 private:
  [[nodiscard]] QColor background() const {
    if (isChecked()) return palette::kAccent;
    return underMouse() ? palette::kOutline : palette::kChip;
  }
};

}  // namespace

TypeChips::TypeChips(QWidget* parent) : QWidget(parent), group_(new QButtonGroup(this)) {
  setFixedHeight(kRowHeight);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  for (const auto category : kChips) {
    auto* chip = new Chip(displayText(label(category)), this);
    group_->addButton(chip, static_cast<int>(category));
    layout->addWidget(chip);
  }
  layout->addStretch();
  connect(group_, &QButtonGroup::idClicked, this,
          [this](int id) { Q_EMIT chosen(static_cast<FileTypeCategory>(id)); });
}

void TypeChips::setCategory(FileTypeCategory category) {
  auto* chip = group_->button(static_cast<int>(category));
  group_->setExclusive(chip != nullptr);
  if (chip) {
    chip->setChecked(true);
  } else if (auto* checked = group_->checkedButton()) {
    checked->setChecked(false);
  }
}

}  // namespace zelnor::ui
