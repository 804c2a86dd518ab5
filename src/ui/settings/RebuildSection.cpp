#include "ui/settings/RebuildSection.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/Palette.h"
#include "ui/ProgressLine.h"
#include "ui/TextLabel.h"
#include "ui/form/ErrorLine.h"
#include "ui/form/FormButton.h"
#include "ui/form/FormSection.h"
#include "ui/settings/RebuildState.h"

namespace zelnor::ui {

namespace {
constexpr int kBesideButton = 14;
constexpr int kBetweenTexts = 2;
constexpr int kBetweenLines = 10;
constexpr int kAboveAndBelow = 10;
}  // namespace

RebuildSection::RebuildSection(QWidget* parent)
    : QWidget(parent),
      rebuild_(new FormButton({}, type::kLabel, this)),
      files_(makeText({}, type::kBody, palette::kText, this)),
      lastIndexed_(makeText({}, type::kDetail, palette::kSecondaryText, this)),
      unapplied_(makeText(QStringLiteral(u"更改将在下次重建索引后生效"), type::kDetail,
                          palette::kSecondaryText, this)),
      progress_(new ProgressLine(this)),
      error_(new ErrorLine(this)) {
  unapplied_->setWordWrap(true);
  connect(rebuild_, &QPushButton::clicked, this, &RebuildSection::rebuildRequested);

  auto* texts = new QVBoxLayout;
  texts->setSpacing(kBetweenTexts);
  for (auto* text : {files_, lastIndexed_, unapplied_}) texts->addWidget(text);
  auto* first = new QHBoxLayout;
  first->setSpacing(kBesideButton);
  first->addWidget(rebuild_);
  first->addLayout(texts, /*stretch=*/1);

  auto* lines = new QVBoxLayout;
  lines->setSpacing(kBetweenLines);
  lines->addLayout(first);
  lines->addWidget(progress_);
  lines->addWidget(error_);
  auto* section = new FormSection(QStringLiteral(u"索引操作"), this);
  section->addRow(lines);
  lines->setContentsMargins(0, kAboveAndBelow, 0, kAboveAndBelow);
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(section);
}

void RebuildSection::setState(const RebuildState& state) {
  rebuild_->setTitle(state.text.sectionButton);
  rebuild_->setEnabled(!state.isRebuilding);
  files_->setText(state.text.indexedFiles);
  lastIndexed_->setText(state.text.lastIndexed.value_or(QString()));
  lastIndexed_->setVisible(state.text.lastIndexed.has_value());
  unapplied_->setVisible(state.hasUnappliedEdits);
  progress_->setProgress(state.progress);
  progress_->setVisible(state.isRebuilding);
  error_->setText(state.error);
}

}  // namespace zelnor::ui
