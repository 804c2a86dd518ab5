#include "ui/panel/FileOperationSheets.h"

#include <utility>

#include "results/FileOperationService.h"
#include "ui/Alert.h"
#include "ui/DisplayText.h"
#include "ui/panel/ProgressSheet.h"

namespace zelnor::ui {

FileOperationSheets::FileOperationSheets(FileOperationService& files, QWidget& panel)
    : QObject(&panel), files_(files), panel_(panel) {
  files.setAlerts(this);
  connect(&files, &FileOperationService::isTakingLongChanged, this,
          &FileOperationSheets::showProgress);
  connect(&files, &FileOperationService::progressChanged, this, [this](int done, int total) {
    if (progress_) progress_->setProgress(done, total);
  });
}

FileOperationSheets::~FileOperationSheets() { files_.setAlerts(nullptr); }

void FileOperationSheets::warn(const std::string& message, const std::string& explanation,
                               bool moreFollow, Closed closed) {
  auto* alert =
      new Alert(displayText(message), displayText(explanation), /*isWarning=*/true, panel_);
  if (moreFollow) {
    alert->addButton(QStringLiteral(u"停止"), Sheet::Role::cancel, [closed] { closed(false); });
    alert->addButton(QStringLiteral(u"继续"), Sheet::Role::prominent, [closed] { closed(true); });
  } else {
    alert->addButton(QStringLiteral(u"好"), Sheet::Role::prominent, [closed] { closed(true); });
  }
  alert->open();
}

void FileOperationSheets::showProgress() {
  if (!files_.isTakingLong()) {
    if (progress_) progress_->finish();
    return;
  }
  progress_ = new ProgressSheet(QStringLiteral(u"正在移到废纸篓..."), panel_);
  connect(progress_, &ProgressSheet::cancelled, &files_, &FileOperationService::cancel);
  progress_->open();
}

}  // namespace zelnor::ui
