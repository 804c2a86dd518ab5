#pragma once

#include <QStyledItemDelegate>

namespace zelnor::ui {

/// Draws one result: icon, name over folder, size, date. Works from the roles of ResultListModel
/// alone.
class ResultDelegate final : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override;
};

}  // namespace zelnor::ui
