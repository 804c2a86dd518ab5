#pragma once

#include <memory>
#include <vector>

#include <QLayout>

namespace zelnor::ui {

/// Places items left to right, each as large as it wants to be, and goes on below when the next
/// does not fit. The first of a line is placed there also if it is too wide for it.
class FlowLayout final : public QLayout {
  Q_OBJECT

 public:
  /// `spacing` is between the items of a line and between lines, in pixels.
  explicit FlowLayout(int spacing, QWidget* parent = nullptr);

  /// The size that lines of at most `width` take; with 0, every item has a line of its own.
  [[nodiscard]] QSize sizeThatFits(int width) const;

  void addItem(QLayoutItem* item) override;
  [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }
  [[nodiscard]] QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] QSize sizeHint() const override { return sizeThatFits(0); }
  [[nodiscard]] QSize minimumSize() const override;
  void setGeometry(const QRect& bounds) override;

 private:
  std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace zelnor::ui
