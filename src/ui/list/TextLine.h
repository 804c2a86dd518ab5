#pragma once

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QString>

class QPainter;

namespace zelnor::ui {

/// Draws single lines of text in one font, left to right whatever they hold, and always at the same
/// height: letters of other fonts, which stand in where this one has none, move nothing.
class TextLine {
 public:
  explicit TextLine(const QFont& font);
  /// The letters stand on the same line as those of `other`, in a box as high.
  TextLine(const QFont& font, const TextLine& other);

  [[nodiscard]] int height() const { return height_; }
  /// Draws the text in the middle of the height of `box`, cut in the middle where it does not fit.
  void paint(QPainter& painter, const QRect& box, const QString& text, const QColor& color,
             Qt::AlignmentFlag side = Qt::AlignLeft) const;

 private:
  QFont font_;
  QFontMetrics metrics_;
  int height_;
  int ascent_;  ///< of the letters, within the height
};

/// A text of which no more than `width` pixels will be seen: where it is much longer, without most
/// of its middle, because measuring takes a time that grows with the length.
QString withoutUnseenMiddle(const QString& text, int width);

}  // namespace zelnor::ui
