#include "ui/list/TrashConfirmation.h"

#include <utility>

#include "ui/Alert.h"
#include "ui/DisplayText.h"

namespace zelnor::ui {

namespace {

QString question(const std::vector<SearchResult>& results) {
  if (results.size() == 1) {
    // Put together, not filled in: a name may hold what looks like a place to fill.
    return QStringLiteral(u"将「") + displayText(results.front().record.name) +
           QStringLiteral(u"」移到废纸篓？");
  }
  return QStringLiteral(u"将 %1 个文件移到废纸篓？").arg(results.size());
}

}  // namespace

void confirmTrash(const std::vector<SearchResult>& results, QWidget& panel,
                  std::function<void()> confirmed) {
  auto* alert = new Alert(question(results), QStringLiteral(u"此操作可在废纸篓中撤销。"),
                          /*isWarning=*/false, panel);
  alert->addButton(QStringLiteral(u"取消"), Sheet::Role::cancel, {});
  alert->addButton(QStringLiteral(u"移到废纸篓"), Sheet::Role::destructive, std::move(confirmed));
  alert->open();
}

}  // namespace zelnor::ui
