#pragma once

#include <QStyledItemDelegate>

namespace zelnor::ui {

/// Draws a row of the lists on the bookmarks page: a name, and below it what `descriptionRole`
/// says, if anything.
class BookmarkSettingsRow final : public QStyledItemDelegate {
  Q_OBJECT

 public:
  enum Role : int { idRole = Qt::UserRole, descriptionRole };

  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override;
};

}  // namespace zelnor::ui
