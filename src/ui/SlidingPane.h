#pragma once

#include <QPixmap>
#include <QVariantAnimation>
#include <QWidget>

namespace zelnor::ui {

/// Shows and hides its content at an edge of the panel: it slides in from there and fades in,
/// while what is beside it makes room.
class SlidingPane final : public QWidget {
  Q_OBJECT

 public:
  enum class Edge : std::uint8_t { top, leading };

  /// Hidden at first. Takes over `content`.
  SlidingPane(QWidget* content, Edge edge, QWidget* parent);

  [[nodiscard]] bool isOpen() const { return isOpen_; }
  void setOpen(bool isOpen);

  [[nodiscard]] QSize sizeHint() const override;
  /// Along the edge, as little as the content can do with.
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void begin();
  void end();
  void placeContent();
  [[nodiscard]] QSize contentSize() const;

  QWidget* content_;
  Edge edge_;
  bool isOpen_ = false;
  double shown_ = 0;  ///< from 0 to 1
  QPixmap picture_;   ///< of the content, while it moves
  QVariantAnimation motion_;
};

}  // namespace zelnor::ui
