#pragma once

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

namespace zelnor::ui {

/// Draws one row of the sidebar, from the roles of BookmarksModel alone: a bookmark's name over
/// what it searches for, or the heading of a category with the button of its menu.
class BookmarkDelegate final : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  /// The heading whose button is under the pointer.
  void setHoveredButton(const QModelIndex& heading) { hoveredButton_ = heading; }
  /// The bookmark that is being dragged: it stands back.
  void setDragged(const QModelIndex& bookmark) { dragged_ = bookmark; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override;
  /// Shows the tool tip where a text is cut.
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

 private:
  void paintBookmark(QPainter& painter, const QStyleOptionViewItem& option,
                     const QModelIndex& index) const;
  void paintHeading(QPainter& painter, const QStyleOptionViewItem& option,
                    const QModelIndex& index) const;

  QPersistentModelIndex hoveredButton_;
  QPersistentModelIndex dragged_;
};

}  // namespace zelnor::ui
