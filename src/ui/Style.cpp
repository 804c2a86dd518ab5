#include "ui/Style.h"

#include <QApplication>
#include <QPalette>

#include "ui/Palette.h"

namespace zelnor::ui {

namespace {

QString scrollBars() {
  return QStringLiteral(
             "QScrollBar:vertical { background: transparent; width: 10px; margin: 2px }"
             "QScrollBar::handle:vertical { background: %1; border-radius: 3px; min-height: 32px }"
             "QScrollBar::handle:vertical:hover { background: %2 }"
             "QScrollBar::add-line, QScrollBar::sub-line { height: 0 }"
             "QScrollBar::add-page, QScrollBar::sub-page { background: none }")
      .arg(palette::kOutline.name(), palette::kFaintText.name());
}

}  // namespace

void applyStyle(QApplication& application) {
  QApplication::setStyle(QStringLiteral("Fusion"));
  QPalette colors(palette::kPanel, palette::kPanel);
  colors.setColor(QPalette::Base, palette::kPanel);
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
    colors.setColor(role, palette::kText);
  }
  colors.setColor(QPalette::PlaceholderText, palette::kFaintText);
  colors.setColor(QPalette::Highlight, palette::kAccent);
  colors.setColor(QPalette::HighlightedText, Qt::white);
  QApplication::setPalette(colors);
  application.setStyleSheet(scrollBars());
}

}  // namespace zelnor::ui
