#include "ui/Alert.h"

#include <QFontMetrics>
#include <QVBoxLayout>

#include "ui/Palette.h"
#include "ui/Symbol.h"
#include "ui/TextLabel.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr int kWidth = 300;  // of the text
constexpr int kSymbol = 28;
constexpr int kGap = 6;
constexpr int kLongest = 400;  // characters

/// A name may be long and have no place to break at, where a line would grow without end.
QLabel* makeWrapped(QString text, type::Size size, const QColor& color, QWidget* parent,
                    QFont::Weight weight) {
  if (text.size() > kLongest) {
    text = text.left(kLongest / 2) + QStringLiteral(u"…") + text.right(kLongest / 2);
  }
  auto* label = makeText({}, size, color, parent, weight);
  const QFontMetrics metrics(label->font());
  const int width = type::scaled(kWidth);
  QString broken;
  int used = 0;
  for (const QChar c : text) {
    const bool breaks = c.isSpace() || c.script() == QChar::Script_Han;
    used = breaks ? 0 : used + metrics.horizontalAdvance(c);
    if (used > width) {
      broken += QChar(u'\u200B');  // a line may end here
      used = 0;
    }
    broken += c;
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
    auto* symbol = new QLabel(card());
    symbol->setPixmap(symbolIcon(QLatin1String("exclamationmark.triangle"), palette::kRed)
                          .pixmap(QSize(kSymbol, kSymbol), devicePixelRatio()));
    texts->addWidget(symbol);
  }
  texts->addWidget(makeWrapped(title, type::kHeadline, palette::kText, card(), QFont::DemiBold));
  texts->addWidget(
      makeWrapped(message, type::kDetail, palette::kSecondaryText, card(), QFont::Normal));
  parts().addLayout(texts);
}

}  // namespace zelnor::ui
