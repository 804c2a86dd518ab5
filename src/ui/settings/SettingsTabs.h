#pragma once

#include <QButtonGroup>
#include <QLatin1String>
#include <QWidget>

namespace zelnor::ui {

/// The bar at the top of the settings: one tab a page, of which one is chosen.
class SettingsTabs final : public QWidget {
  Q_OBJECT

 public:
  explicit SettingsTabs(QWidget* parent);

  void addTab(QLatin1String symbol, const QString& title);
  void choose(int page);

 Q_SIGNALS:
  void chosen(int page);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QButtonGroup group_;
};

}  // namespace zelnor::ui
