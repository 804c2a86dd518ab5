#pragma once

#include <QStyledItemDelegate>

#include "ui/list/ResultRowGeometry.h"
#include "ui/list/TextLine.h"

namespace zelnor {
class FileIcons;
}

namespace zelnor::ui {

class RowHighlights;

/// Draws one result: icon, name over folder, size, date. Works from the roles of ResultListModel
/// alone, and without a file's being looked at.
class ResultDelegate final : public QStyledItemDelegate {
  Q_OBJECT

 public:
  /// `icons` may be nullptr. Both outlive the delegate.
  ResultDelegate(const RowHighlights& highlights, FileIcons* icons, QObject* parent);

  /// Takes the fonts anew that the user has chosen.
  void updateFonts() { texts_ = {}; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override;

 private:
  /// Made once: it takes longer than a row.
  struct Texts {
    Texts();
    [[nodiscard]] ResultRowGeometry::Lines lines() const;

    TextLine name;
    TextLine selectedName;
    TextLine detail;
    TextLine digits;
  };

  void paintTexts(QPainter& painter, const ResultRowGeometry& parts, const QModelIndex& index,
                  bool isSelected) const;

  const RowHighlights& highlights_;
  FileIcons* icons_;
  Texts texts_;
};

}  // namespace zelnor::ui
