#include "ui/settings/IndexStatusCard.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "ui/Palette.h"
#include "ui/ProgressLine.h"
#include "ui/TextLabel.h"
#include "ui/form/ErrorLine.h"
#include "ui/form/FormButton.h"
#include "ui/form/FormSection.h"
#include "ui/settings/IndexStatRow.h"
#include "ui/settings/RebuildState.h"

namespace zelnor::ui {

namespace {
constexpr int kDot = 10;
constexpr int kBesideDot = 8;
constexpr int kBetweenLines = 6;
constexpr int kAboveAndBelow = 12;
}  // namespace

/// The light that says whether the index is being rebuilt.
class IndexStatusCard::Dot final : public QWidget {
 public:
  explicit Dot(QWidget* parent) : QWidget(parent) { setFixedSize(kDot, kDot); }

  void setColor(const QColor& color) {
    color_ = color;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color_);
    painter.drawEllipse(rect());
  }

 private:
  QColor color_ = palette::kGreen;
};

IndexStatusCard::IndexStatusCard(QWidget* parent)
    : QWidget(parent),
      dot_(new Dot(this)),
      state_(makeText({}, type::kHeadline, palette::kText, this, QFont::DemiBold)),
      rebuild_(new FormButton({}, type::kDetail, this, FormButton::Look::plain)),
      files_(new IndexStatRow(QStringLiteral(u"已索引文件"), this)),
      updated_(new IndexStatRow(QStringLiteral(u"上次更新"), this)),
      followed_(makeText({}, type::kDetail, palette::kSecondaryText, this)),
      progress_(new ProgressLine(this)),
      error_(new ErrorLine(this)) {
  followed_->setWordWrap(true);
  connect(rebuild_, &QPushButton::clicked, this, &IndexStatusCard::rebuildRequested);

  auto* header = new QHBoxLayout;
  header->setSpacing(kBesideDot);
  header->addWidget(dot_);
  header->addWidget(state_, /*stretch=*/1);
  header->addWidget(rebuild_);

  auto* lines = new QVBoxLayout;
  lines->setSpacing(kBetweenLines);
  lines->addLayout(header);
  for (QWidget* line : {static_cast<QWidget*>(files_), static_cast<QWidget*>(updated_),
                        static_cast<QWidget*>(followed_), static_cast<QWidget*>(progress_),
                        static_cast<QWidget*>(error_)}) {
    lines->addWidget(line);
  }
  auto* section = new FormSection({}, this);
  section->addRow(lines);
  lines->setContentsMargins(0, kAboveAndBelow, 0, kAboveAndBelow);
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(section);
}

void IndexStatusCard::setState(const RebuildState& state) {
  dot_->setColor(state.isRebuilding ? palette::kOrange : palette::kGreen);
  state_->setText(state.text.state);
  rebuild_->setTitle(state.text.cardButton);
  rebuild_->setEnabled(!state.isRebuilding);
  files_->setValue(state.text.fileCount);
  updated_->setValue(state.text.lastUpdate);
  followed_->setText(state.text.followed.value_or(QString()));
  followed_->setVisible(state.text.followed.has_value());
  progress_->setProgress(state.progress);
  progress_->setVisible(state.isRebuilding);
  error_->setText(state.error);
}

}  // namespace zelnor::ui
