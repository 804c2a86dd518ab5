#pragma once

#include <QTimer>
#include <QWidget>

namespace zelnor::ui {

/// A small turning ring: something is under way. It turns only while it is to be seen.
class Spinner final : public QWidget {
  Q_OBJECT

 public:
  explicit Spinner(QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  QTimer turn_;
  int degrees_ = 0;
};

}  // namespace zelnor::ui
