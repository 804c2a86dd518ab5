#include "ui/Menu.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionMenuItem>

#include "ui/Palette.h"
#include "ui/Symbol.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr int kMenuSymbol = 15;
constexpr int kMenuPadding = 8;
constexpr int kSymbolGap = 8;
constexpr int kShortcutGap = 24;
constexpr int kItemHeight = 26;
constexpr int kSeparatorHeight = 9;
constexpr int kShortest = 120;
constexpr double kMenuRadius = 5;
constexpr auto kDestructive = "destructive";

/// What menus write for a single "&".
QString verbatim(QString title) { return title.replace(u'&', QStringLiteral("&&")); }

/// What stands before the tab in an entry's text; behind it is the shortcut.
QString shown(const QStyleOptionMenuItem& item) {
  return item.text.section(u'\t', 0, 0).replace(QStringLiteral("&&"), QStringLiteral("&"));
}

QString shortcut(const QStyleOptionMenuItem& item) { return item.text.section(u'\t', 1); }

}  // namespace

Menu::Menu(QWidget* parent) : QMenu(parent) { setFont(type::font(type::kBody)); }

QAction* Menu::add(QLatin1String symbol, const QString& title, std::function<void()> chosen) {
  auto* action = addAction(verbatim(title));
  if (!symbol.isEmpty()) action->setIcon(symbolIcon(symbol, palette::kSecondaryText));
  connect(action, &QAction::triggered, this, std::move(chosen));
  return action;
}

QAction* Menu::addDestructive(QLatin1String symbol, const QString& title,
                              std::function<void()> chosen) {
  auto* action = add(symbol, title, std::move(chosen));
  if (!symbol.isEmpty()) action->setIcon(symbolIcon(symbol, palette::kRed));
  action->setProperty(kDestructive, true);
  return action;
}

void Menu::keyPressEvent(QKeyEvent* event) {
  const QKeySequence pressed(event->keyCombination());
  for (auto* const action : actions()) {
    if (!action->isEnabled() || action->shortcut().isEmpty() || action->shortcut() != pressed)
      continue;
    close();
    return action->trigger();
  }
  QMenu::keyPressEvent(event);
}

void Menu::initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const {
  QMenu::initStyleOption(option, action);
  if (action->property(kDestructive).toBool()) {
    option->palette.setColor(QPalette::Text, palette::kRed);
  }
}

void paintMenuPanel(QPainter& painter, const QRect& rect) {
  painter.save();
  painter.setPen(palette::kOutline);
  painter.setBrush(palette::kPanel);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.drawRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5));
  painter.restore();
}

void paintMenuItem(QPainter& painter, const QStyleOptionMenuItem& item) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (item.menuItemType == QStyleOptionMenuItem::Separator) {
    const auto line = item.rect.adjusted(kMenuPadding, 0, -kMenuPadding, 0);
    painter.fillRect(QRect(line.left(), line.center().y(), line.width(), 1), palette::kSeparator);
    painter.restore();
    return;
  }
  const bool isChosen = item.state.testFlag(QStyle::State_Selected);
  if (isChosen) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::kSelection);
    painter.drawRoundedRect(item.rect, kMenuRadius, kMenuRadius);
  }
  const int side = type::scaled(kMenuSymbol);
  QRect place(item.rect.left() + kMenuPadding, 0, side, side);
  place.moveTop(item.rect.center().y() - side / 2);
  if (item.checkType != QStyleOptionMenuItem::NotCheckable && item.checked) {
    paintSymbol(painter, place, QLatin1String("checkmark"), palette::kSecondaryText);
  } else {
    item.icon.paint(&painter, place);
  }
  const auto text = item.rect.adjusted(kMenuPadding + side + kSymbolGap, 0, -kMenuPadding, 0);
  painter.setFont(item.font);
  painter.setPen(item.palette.color(QPalette::Text));
  painter.drawText(text, Qt::AlignVCenter | Qt::TextSingleLine,
                   painter.fontMetrics().elidedText(shown(item), Qt::ElideRight, text.width()));
  painter.setPen(palette::kSecondaryText);
  painter.drawText(text, Qt::AlignVCenter | Qt::AlignRight | Qt::TextSingleLine, shortcut(item));
  painter.restore();
}

QSize menuItemSize(const QStyleOptionMenuItem& item) {
  if (item.menuItemType == QStyleOptionMenuItem::Separator) return {kShortest, kSeparatorHeight};
  const QFontMetrics metrics(item.font);
  int text = metrics.horizontalAdvance(shown(item));
  if (const auto keys = shortcut(item); !keys.isEmpty())
    text += kShortcutGap + metrics.horizontalAdvance(keys);
  const int width = 3 * kMenuPadding + type::scaled(kMenuSymbol) + kSymbolGap + text;
  return {std::max(width, kShortest), type::scaled(kItemHeight)};
}

}  // namespace zelnor::ui
