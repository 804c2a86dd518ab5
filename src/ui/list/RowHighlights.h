#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QColor>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include "ui/list/RowFades.h"

class QWidget;

namespace zelnor::ui {

/// The backgrounds of rows, which change gently when a row is selected or the pointer comes over
/// it. Knows rows by their identifiers, and only those that are to be seen.
class RowHighlights final : public QObject {
  Q_OBJECT

 public:
  struct Row {
    std::int64_t id = 0;
    bool isSelected = false;
  };

  /// For the rows of `view`, whose style says whether anything moves.
  explicit RowHighlights(const QWidget& view, QObject* parent = nullptr);

  /// These rows are to be seen now. One that was before and was not selected then, or was, changes
  /// gently.
  void show(std::vector<Row> rows);
  void setHovered(std::optional<std::int64_t> id);
  /// Some background is on its way to another; else nothing runs.
  [[nodiscard]] bool isMoving() const { return frame_.isActive(); }

  [[nodiscard]] QColor background(std::int64_t id, bool isSelected) const;

 Q_SIGNALS:
  /// The background of this row is another one now.
  void changed(std::int64_t id);

 private:
  [[nodiscard]] RowFades::Time now() const { return RowFades::Time(clock_.elapsed()); }
  void follow(std::int64_t id);
  void advance();

  std::vector<Row> rows_;
  std::optional<std::int64_t> hovered_;
  RowFades selection_;
  RowFades hover_;
  QElapsedTimer clock_;
  QTimer frame_;  ///< runs only while something moves
};

}  // namespace zelnor::ui
