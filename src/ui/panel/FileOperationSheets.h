#pragma once

#include <QObject>
#include <QPointer>

#include "results/FileOperationAlerts.h"

class QWidget;

namespace zelnor {
class FileOperationService;
}

namespace zelnor::ui {

class Alert;
class ProgressSheet;

/// Tells of file operations over the panel: what failed, and how far a long one has come.
class FileOperationSheets final : public QObject, public FileOperationAlerts {
  Q_OBJECT

 public:
  /// Both outlive it. Child of the panel.
  FileOperationSheets(FileOperationService& files, QWidget& panel);
  ~FileOperationSheets() override;

  void warn(const std::string& message, const std::string& explanation, bool moreFollow,
            Closed closed) override;

 private:
  void showProgress();

  FileOperationService& files_;
  QWidget& panel_;
  QPointer<ProgressSheet> progress_;
};

}  // namespace zelnor::ui
