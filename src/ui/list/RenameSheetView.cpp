#include "ui/list/RenameSheetView.h"

#include <utility>

#include <QLineEdit>
#include <QVBoxLayout>

#include "ui/Palette.h"
#include "ui/TextField.h"
#include "ui/TextLabel.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {
constexpr int kAroundField = 24;
constexpr int kNameWidth = 300;
}  // namespace

RenameSheetView::RenameSheetView(std::string name, bool selectsStem,
                                 std::function<void(const std::string&)> confirmed, QWidget& panel)
    : Sheet(QStringLiteral(u"重命名"), panel), name_(std::move(name)) {
  parts().setContentsMargins(kAroundField, kAroundField, kAroundField, kAroundField);
  parts().addWidget(makeText(QStringLiteral(u"重命名"), type::kHeadline, palette::kText, card(),
                             QFont::DemiBold));
  addField(selectsStem);
  addButton(QStringLiteral(u"取消"), Role::cancel, {});
  addButton(QStringLiteral(u"确定"), Role::prominent,
            [this, confirmed = std::move(confirmed)] { confirmed(enteredName()); });
}

void RenameSheetView::addField(bool selectsStem) {
  field_ = makeTextField(QStringLiteral(u"文件名"), QString::fromStdString(name_), card());
  field_->setFixedWidth(type::scaled(kNameWidth));
  parts().addWidget(field_);
  setFirstFocus(field_);
  const auto dot = field_->text().lastIndexOf(u'.');
  if (selectsStem && dot > 0) {
    field_->setSelection(0, static_cast<int>(dot));
  } else {
    field_->selectAll();
  }
}

std::string RenameSheetView::enteredName() const {
  const auto text = field_->text();
  return text == QString::fromStdString(name_) ? name_ : text.toStdString();
}

}  // namespace zelnor::ui
