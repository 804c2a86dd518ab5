#pragma once

#include <QLatin1String>
#include <QObject>
#include <QString>
#include <QSystemTrayIcon>

namespace zelnor::ui {

class Menu;

/// A symbol in the tray of X11's older bars, with a menu behind it; it docks as soon as such a bar
/// is there, and again when it comes back. Needs X11; main thread only.
class XEmbedTrayIcon final : public QObject {
  Q_OBJECT

 public:
  /// `menu` outlives the icon.
  XEmbedTrayIcon(QLatin1String symbol, const QString& toolTip, Menu& menu);
  ~XEmbedTrayIcon() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void suitBar();

  QLatin1String symbol_;
  Menu& menu_;
  QSystemTrayIcon icon_;
};

}  // namespace zelnor::ui
