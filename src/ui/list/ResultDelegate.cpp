#include "ui/list/ResultDelegate.h"

#include <algorithm>

#include <QPainter>

#include "store/FileRecord.h"
#include "ui/Focus.h"
#include "ui/Palette.h"
#include "ui/Typography.h"
#include "ui/list/ResultListModel.h"
#include "ui/list/RowHighlights.h"
#include "ui/list/RowIcon.h"

namespace zelnor::ui {

ResultDelegate::Texts::Texts()
    : name(type::font(type::kBody, QFont::Medium)),
      selectedName(type::font(type::kBody, QFont::DemiBold)),
      detail(type::font(type::kDetail)),
      digits(type::monospaced(type::kDetail), detail) {}

ResultRowGeometry::Lines ResultDelegate::Texts::lines() const {
  return {.name = std::max(name.height(), selectedName.height()), .folder = detail.height()};
}

ResultDelegate::ResultDelegate(const RowHighlights& highlights, FileIcons* icons, QObject* parent)
    : QStyledItemDelegate(parent), highlights_(highlights), icons_(icons) {}

void ResultDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
  const auto* record = index.data(ResultListModel::recordRole).value<const FileRecord*>();
  if (record == nullptr) return;
  painter->save();
  painter->setClipRect(option.rect, Qt::IntersectClip);  // some letters are higher than any row
  painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  const bool isSelected = option.state.testFlag(QStyle::State_Selected);
  const auto parts = ResultRowGeometry::of(option.rect, texts_.lines());

  painter->fillRect(option.rect, highlights_.background(record->id, isSelected));
  paintRowIcon(*painter, parts.icon, *record, icons_);
  paintTexts(*painter, parts, index, isSelected);
  if (option.state.testFlag(QStyle::State_HasFocus) && showsFocus(*option.widget)) {
    paintFocusRing(*painter, option.rect, /*radius=*/0);
  }
  painter->restore();
}

void ResultDelegate::paintTexts(QPainter& painter, const ResultRowGeometry& parts,
                                const QModelIndex& index, bool isSelected) const {
  const auto text = [&index](int role) { return index.data(role).toString(); };
  const auto& name = isSelected ? texts_.selectedName : texts_.name;
  const auto& grey = palette::kSecondaryText;
  name.paint(painter, parts.name, text(Qt::DisplayRole),
             isSelected ? palette::kAccent : palette::kText);
  texts_.detail.paint(painter, parts.folder, text(ResultListModel::folderRole), grey);
  texts_.digits.paint(painter, parts.size, text(ResultListModel::sizeRole), grey, Qt::AlignRight);
  texts_.detail.paint(painter, parts.date, text(ResultListModel::dateRole), grey, Qt::AlignRight);
}

QSize ResultDelegate::sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& /*index*/) const {
  return {option.rect.width(), ResultRowGeometry::height(texts_.lines())};
}

}  // namespace zelnor::ui
