#pragma once

#include <QWidget>

#include "search/FileTypeCategory.h"

class QButtonGroup;

namespace zelnor::ui {

/// One row of file types to choose from; exactly one is chosen.
class TypeChips final : public QWidget {
  Q_OBJECT

 public:
  explicit TypeChips(QWidget* parent = nullptr);

  /// Marks the chip of `category`, or none if it has no chip; not signalled.
  void setCategory(FileTypeCategory category);

 Q_SIGNALS:
  /// The user chose another type.
  void chosen(zelnor::FileTypeCategory category);

 private:
  QButtonGroup* group_;
};

}  // namespace zelnor::ui
