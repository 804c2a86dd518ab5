#pragma once

#include <optional>

#include <QTimer>
#include <QWidget>

namespace zelnor::ui {

/// How far something has come, as a line that fills; while nobody knows, a piece of it wanders.
class ProgressLine final : public QWidget {
  Q_OBJECT

 public:
  explicit ProgressLine(QWidget* parent);

  /// From 0 to 1; nothing while nobody knows.
  void setProgress(std::optional<double> part);
  [[nodiscard]] std::optional<double> progress() const { return part_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void wander();

  std::optional<double> part_ = 0;
  double position_ = 0;  ///< of the piece that wanders, from 0 to 1
  QTimer steps_;
};

}  // namespace zelnor::ui
