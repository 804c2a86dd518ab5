#include "ui/bookmarks/RenameCategorySheet.h"

#include <utility>

#include <QVBoxLayout>

#include "ui/Palette.h"
#include "ui/TextField.h"
#include "ui/TextLabel.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {
constexpr int kCategoryWidth = 240;
const auto kRenameTitle = QStringLiteral(u"重命名分类");
}  // namespace

RenameCategorySheet::RenameCategorySheet(const std::string& name,
                                         std::function<void(const std::string&)> onConfirm,
                                         QWidget& panel)
    : Sheet(kRenameTitle, panel) {
  auto* field = makeTextField(QStringLiteral(u"分类名称"), QString::fromStdString(name), card());
  field->setFixedWidth(type::scaled(kCategoryWidth));
  field->selectAll();
  parts().addWidget(
      makeText(kRenameTitle, type::kHeadline, palette::kText, card(), QFont::DemiBold));
  parts().addWidget(field);
  addButton(QStringLiteral(u"取消"), Role::cancel, {});
  addButton(QStringLiteral(u"确定"), Role::prominent,
            [field, onConfirm = std::move(onConfirm)] { onConfirm(field->text().toStdString()); });
  setFirstFocus(field);
}

}  // namespace zelnor::ui
