#include "ui/Alert.h"

#include <QFontMetrics>
#include <QTextBoundaryFinder>
#include <QVBoxLayout>

#include "ui/Palette.h"
#include "ui/TextLabel.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr int kWidth = 300;  // of the text
constexpr int kSymbol = 28;
constexpr int kGap = 6;
constexpr int kLongest = 400;  // characters

QString withoutMiddle(const QString& text) {
  if (text.size() <= kLongest) return text;
  QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, text);
  letters.setPosition(kLongest / 2);
  const auto first = letters.isAtBoundary() ? letters.position() : letters.toPreviousBoundary();
  letters.setPosition(text.size() - kLongest / 2);
  const auto last = letters.isAtBoundary() ? letters.position() : letters.toNextBoundary();
  return text.first(first) + u'…' + text.sliced(last);
}

/// A name may be long and have no place to break at, where a line would grow without end.
QLabel* makeWrapped(const QString& whole, type::Size size, const QColor& color, QWidget* parent,
                    QFont::Weight weight) {
  const auto text = withoutMiddle(whole);
  auto* label = makeText({}, size, color, parent, weight);
  const QFontMetrics metrics(label->font());
  const int width = type::scaled(kWidth);
  QString broken;
  int used = 0;
  QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, text);
  for (qsizetype at = 0; at < text.size();) {
    const auto letter = text.sliced(at, letters.toNextBoundary() - at);
    const bool breaks = letter[0].isSpace() || letter[0].script() == QChar::Script_Han;
    used = breaks ? 0 : used + metrics.horizontalAdvance(letter);
    if (used > width) {
      broken += QChar(u'\u200B');  // a line may end here
      used = 0;
    }
    broken += letter;
    at += letter.size();
  }
  label->setText(broken);
  label->setWordWrap(true);
  label->setFixedWidth(width);
  return label;
}

}  // namespace

Alert::Alert(const QString& title, const QString& message, bool isWarning, QWidget& panel)
    : Sheet(title, panel) {
  setAccessibleDescription(message);
  auto* texts = new QVBoxLayout;
  texts->setSpacing(kGap);
  if (isWarning) {
    texts->addWidget(
        makeSymbol(QLatin1String("exclamationmark.triangle"), kSymbol, palette::kRed, card()));
  }
  texts->addWidget(makeWrapped(title, type::kHeadline, palette::kText, card(), QFont::DemiBold));
  texts->addWidget(
      makeWrapped(message, type::kDetail, palette::kSecondaryText, card(), QFont::Normal));
  parts().addLayout(texts);
}

}  // namespace zelnor::ui
