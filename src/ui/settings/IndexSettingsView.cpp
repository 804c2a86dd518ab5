#include "ui/settings/IndexSettingsView.h"

#include <QFile>
#include <QFileDialog>
#include <QVBoxLayout>

#include "indexer/IndexSettingsText.h"
#include "ui/DisplayText.h"
#include "ui/Palette.h"
#include "ui/TextLabel.h"
#include "ui/form/FormSection.h"
#include "ui/form/Switch.h"
#include "ui/settings/FolderList.h"
#include "ui/settings/IndexStatusCard.h"
#include "ui/settings/RebuildSection.h"
#include "ui/settings/RebuildState.h"

namespace zelnor::ui {

namespace {

constexpr int kSides = 24;
constexpr int kAboveAndBelow = 12;
constexpr int kBetweenSections = 14;

QString pickerTitle(IndexViewModel::PathList list) {
  return list == IndexViewModel::PathList::included ? QStringLiteral(u"选择要索引的文件夹")
                                                    : QStringLiteral(u"选择要排除的文件夹");
}

}  // namespace

IndexSettingsView::IndexSettingsView(IndexViewModel& index, QWidget* parent)
    : QScrollArea(parent),
      index_(index),
      content_(new QWidget),
      card_(new IndexStatusCard(content_)),
      included_(new FolderList({.title = QStringLiteral(u"索引范围"),
                                .symbol = QLatin1String("folder"),
                                .addTitle = QStringLiteral(u"添加要索引的文件夹")},
                               content_)),
      excluded_(new FolderList({.title = QStringLiteral(u"排除路径"),
                                .symbol = QLatin1String("folder.badge.minus"),
                                .addTitle = QStringLiteral(u"添加要排除的文件夹")},
                               content_)),
      rebuild_(new RebuildSection(content_)) {
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidgetResizable(true);
  layOut();
  setWidget(content_);
  // Both draw what lies behind them, which need not be the colour that Qt takes for windows.
  for (auto* surface : {viewport(), content_}) {
    surface->setAutoFillBackground(true);
    surface->setPalette(QPalette(palette::kPanel));
  }
  listenToIndex();
  showConfiguration();
  showState();
}

void IndexSettingsView::layOut() {
  auto* column = new QVBoxLayout(content_);
  column->setContentsMargins(kSides, kAboveAndBelow, kSides, kAboveAndBelow);
  column->setSpacing(kBetweenSections);
  column->addWidget(card_);
  column->addWidget(makeSeparator(Qt::Horizontal, content_));
  column->addWidget(included_);
  column->addWidget(excluded_);
  addOptions(*column);
  column->addWidget(rebuild_);
  column->addStretch();
}

void IndexSettingsView::addOptions(QVBoxLayout& column) {
  auto* options = new FormSection(QStringLiteral(u"索引选项"), content_);
  const auto add = [&](const QString& title, bool IndexConfiguration::* field) {
    options->addRow(title, makeSwitch(title, field));
  };
  add(QStringLiteral(u"跳过隐藏文件（以 . 开头）"), &IndexConfiguration::skipHiddenFiles);
  add(QStringLiteral(u"跳过应用包内部文件（.app）"), &IndexConfiguration::skipPackageContents);
  add(QStringLiteral(u"跳过符号链接"), &IndexConfiguration::skipSymlinks);
  column.addWidget(options);
}

Switch* IndexSettingsView::makeSwitch(const QString& title, bool IndexConfiguration::* field) {
  auto* made = new Switch(title, content_);
  const auto showField = [this, made, field] { made->setChecked(index_.configuration().*field); };
  connect(&index_, &IndexViewModel::configurationChanged, made, showField);
  connect(made, &QPushButton::clicked, this, [this, field](bool isOn) {
    auto edited = index_.configuration();
    edited.*field = isOn;
    index_.setConfiguration(std::move(edited));
  });
  showField();
  return made;
}

void IndexSettingsView::listenToIndex() {
  using Model = IndexViewModel;
  connect(&index_, &Model::configurationChanged, this, &IndexSettingsView::showConfiguration);
  connect(&index_, &Model::isRebuildingIndexChanged, this, &IndexSettingsView::showState);
  connect(&index_, &Model::rebuildErrorChanged, this, &IndexSettingsView::showState);
  connect(&index_, &Model::hasUnappliedEditsChanged, this, &IndexSettingsView::showState);
  connect(card_, &IndexStatusCard::rebuildRequested, &index_, &Model::startRebuild);
  connect(rebuild_, &RebuildSection::rebuildRequested, &index_, &Model::startRebuild);
  connectList(included_, PathList::included);
  connectList(excluded_, PathList::excluded);
}

void IndexSettingsView::connectList(FolderList* folders, PathList list) {
  connect(folders, &FolderList::addRequested, this, [this, list] { pickFolder(list); });
  connect(folders, &FolderList::removeRequested, this,
          [this, list](const std::string& path) { index_.removePath(list, path); });
}

void IndexSettingsView::setStatus(const IndexStatus& status) {
  if (status == status_) return;
  status_ = status;
  showState();
}

void IndexSettingsView::showConfiguration() {
  included_->setPaths(index_.configuration().includedPaths);
  excluded_->setPaths(index_.configuration().excludedPaths);
}

void IndexSettingsView::showState() {
  const bool isRebuilding = index_.isRebuildingIndex();
  const RebuildState state{.text = indexSettingsText(status_, isRebuilding, displayLocale()),
                           .isRebuilding = isRebuilding,
                           .progress = rebuildProgress(status_),
                           .error = displayText(index_.rebuildError().value_or(std::string())),
                           .hasUnappliedEdits = index_.hasUnappliedEdits()};
  card_->setState(state);
  rebuild_->setState(state);
}

void IndexSettingsView::pickFolder(PathList list) {
  if (picker_) return;
  picker_ = new QFileDialog(this, pickerTitle(list));
  picker_->setAttribute(Qt::WA_DeleteOnClose);
  picker_->setFileMode(QFileDialog::Directory);
  picker_->setOption(QFileDialog::ShowDirsOnly);
  connect(picker_, &QFileDialog::fileSelected, this, [this, list](const QString& path) {
    // Qt has lost the bytes of a name that is not UTF-8; there is no such folder then.
    if (path.isEmpty() || path.contains(QChar::ReplacementCharacter)) return;
    index_.addPath(list, QFile::encodeName(path).toStdString());
  });
  picker_->open();
}

}  // namespace zelnor::ui
