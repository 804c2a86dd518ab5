#include "ui/Typography.h"

#include <algorithm>
#include <cmath>

#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>

namespace zelnor::ui::type {

namespace {
constexpr double kLargestUsual = 11;  // points
}

double scale() {
  return std::max(1.0, QFontInfo(QGuiApplication::font()).pointSizeF() / kLargestUsual);
}

int scaled(int length) { return static_cast<int>(std::lround(length * scale())); }

QFont font(Size size, QFont::Weight weight) {
  QFont font = QGuiApplication::font();
  font.setPixelSize(scaled(size));
  font.setWeight(weight);
  return font;
}

QFont monospaced(Size size) {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPixelSize(scaled(size));
  return font;
}

}  // namespace zelnor::ui::type
