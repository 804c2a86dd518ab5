#pragma once

#include <functional>

#include <QLatin1String>
#include <QMenu>

class QStyleOptionMenuItem;

namespace zelnor::ui {

/// A menu with symbols.
class Menu final : public QMenu {
  Q_OBJECT

 public:
  explicit Menu(QWidget* parent);

  /// Appends an entry; `title` is shown as it is. Without a symbol the place for it stays empty.
  QAction* add(QLatin1String symbol, const QString& title, std::function<void()> chosen);
  /// The same for what takes something away: in red.
  QAction* addDestructive(QLatin1String symbol, const QString& title, std::function<void()> chosen);

 protected:
  /// A shortcut that the menu shows works while it is open.
  void keyPressEvent(QKeyEvent* event) override;
  void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override;
};

/// For the style.
inline constexpr int kMenuMargin = 5;
void paintMenuPanel(QPainter& painter, const QRect& rect);
void paintMenuItem(QPainter& painter, const QStyleOptionMenuItem& item);
QSize menuItemSize(const QStyleOptionMenuItem& item);

}  // namespace zelnor::ui
