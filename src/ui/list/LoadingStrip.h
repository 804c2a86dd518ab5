#pragma once

#include <QWidget>

namespace zelnor::ui {

/// Says at the end of a list that more rows are on their way.
class LoadingStrip final : public QWidget {
  Q_OBJECT

 public:
  explicit LoadingStrip(QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace zelnor::ui
