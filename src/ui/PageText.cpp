#include "ui/PageText.h"

#include <QLabel>
#include <QPainter>

#include "ui/Glyphs.h"
#include "ui/Palette.h"

namespace zelnor::ui {

namespace {

constexpr int kMagnifierSize = 44;

class Magnifier final : public QWidget {
 public:
  explicit Magnifier(QWidget* parent) : QWidget(parent) {
    setFixedSize(kMagnifierSize, kMagnifierSize);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    paintMagnifier(painter, rect(), palette::kFaintText);
  }
};

}  // namespace

QLabel* makeText(const QString& text, int pixelSize, const QColor& color, QWidget* parent,
                 QFont::Weight weight) {
  auto* label = new QLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  QFont font = label->font();
  font.setPixelSize(pixelSize);
  font.setWeight(weight);
  label->setFont(font);
  QPalette colors = label->palette();
  colors.setColor(QPalette::WindowText, color);
  label->setPalette(colors);
  return label;
}

QWidget* makeMagnifier(QWidget* parent) { return new Magnifier(parent); }

}  // namespace zelnor::ui
