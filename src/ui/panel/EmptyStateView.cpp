#include "ui/panel/EmptyStateView.h"

#include <algorithm>

#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "ui/DisplayText.h"
#include "ui/FlowLayout.h"
#include "ui/Palette.h"
#include "ui/PlainButton.h"
#include "ui/TextLabel.h"

namespace zelnor::ui {

namespace {

constexpr int kSides = 16;
constexpr int kHeaderTop = 16;
constexpr int kHeaderBottom = 6;
constexpr int kChipSpacing = 8;
constexpr int kChipsTop = 2;
constexpr int kAroundSeparator = 8;
constexpr int kHintTop = 60;
constexpr int kHintSpacing = 12;
constexpr int kRemainder = 20;

void paintDot(QPainter& painter, const QRect& rect, int left, int side, QColor color,
              float opacity) {
  color.setAlphaF(opacity);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawEllipse(QRectF(left, (rect.height() - side) / 2.0, side, side));
}

class RecentRow final : public PlainButton {
 public:
  RecentRow(const QString& query, QWidget* parent) : PlainButton(query, parent) {
    setFont(type::font(type::kBody));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  }
  [[nodiscard]] QSize sizeHint() const override {
    constexpr int kTextHeight = 18;
    constexpr int kAboveAndBelow = 10;
    return {2 * kSides, type::scaled(kTextHeight) + 2 * kAboveAndBelow};
  }

 protected:
  void paint(QPainter& painter) override {
    constexpr int kDot = 12;
    constexpr int kGap = 10;
    if (underMouse()) painter.fillRect(rect(), palette::kHover);
    paintDot(painter, rect(), kSides, kDot, palette::kFaintText, 0.4F);
    const auto text = rect().adjusted(kSides + kDot + kGap, 0, -kSides, 0);
    painter.setPen(palette::kSecondaryText);
    painter.drawText(text, Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(title(), Qt::ElideMiddle, text.width()));
  }
};

class BookmarkChip final : public PlainButton {
 public:
  BookmarkChip(const QString& name, QWidget* parent) : PlainButton(name, parent) {
    setFont(type::font(type::kLabel, QFont::Medium));
  }
  [[nodiscard]] QSize sizeHint() const override {
    constexpr int kTextHeight = 16;
    const int text = std::min(fontMetrics().horizontalAdvance(title()), type::scaled(kLongest));
    return {text + kDot + kGap + 2 * kChipSides, type::scaled(kTextHeight) + 2 * kAboveAndBelow};
  }

 protected:
  void paint(QPainter& painter) override {
    painter.setPen(Qt::NoPen);
    painter.setBrush(underMouse() ? palette::kOutline : palette::kChip);
    painter.drawRoundedRect(rect(), cornerRadius(), cornerRadius());
    paintDot(painter, rect(), kChipSides, kDot, palette::kAccent, 0.7F);
    const auto text = rect().adjusted(kChipSides + kDot + kGap, 0, -kChipSides, 0);
    painter.setPen(palette::kSecondaryText);
    painter.drawText(text, Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(title(), Qt::ElideMiddle, text.width()));
  }
  [[nodiscard]] double cornerRadius() const override { return 14; }

 private:
  static constexpr int kDot = 10;
  static constexpr int kGap = 7;
  static constexpr int kChipSides = 12;
  static constexpr int kAboveAndBelow = 7;
  static constexpr int kLongest = 240;
};

QLabel* makeHeader(const QString& title, QWidget* parent) {
  auto* header = makeText(title, type::kDetail, palette::kFaintText, parent, QFont::DemiBold);
  header->setContentsMargins(kSides, kHeaderTop, kSides, kHeaderBottom);
  return header;
}

void addHint(QVBoxLayout& page) {
  page.addSpacing(kHintTop);
  page.addWidget(makeHeroSymbol(QLatin1String("magnifyingglass.ultralight"), nullptr), 0,
                 Qt::AlignHCenter);
  page.addSpacing(kHintSpacing);
  page.addWidget(makeText(QStringLiteral(u"输入关键词搜索文件"), type::kQuery,
                          palette::kSecondaryText, nullptr),
                 0, Qt::AlignHCenter);
  page.addSpacing(kHintSpacing / 2);
  page.addWidget(makeText(QStringLiteral(u"支持文件名、通配符（* ?）、正则（r:...）"), type::kLabel,
                          palette::kFaintText, nullptr),
                 0, Qt::AlignHCenter);
}

}  // namespace

EmptyStateView::EmptyStateView(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  rebuild();
}

void EmptyStateView::setRecentSearches(std::vector<std::string> searches) {
  recents_ = std::move(searches);
  rebuild();
}

void EmptyStateView::setBookmarks(const std::vector<SearchBookmark>& bookmarks) {
  const auto count = std::min(bookmarks.size(), kTopBookmarks);
  bookmarks_.assign(bookmarks.begin(), bookmarks.begin() + static_cast<std::ptrdiff_t>(count));
  rebuild();
}

void EmptyStateView::rebuild() {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  if (!recents_.empty()) addRecents(*layout);
  if (!bookmarks_.empty()) addBookmarks(*layout);
  if (recents_.empty() && bookmarks_.empty()) addHint(*layout);
  layout->addSpacing(kRemainder);
  layout->addStretch();
  for (auto* entry : page->findChildren<PlainButton*>()) entry->installEventFilter(this);
  // The one that is there may be what has just been pressed.
  if (auto* before = takeWidget()) before->deleteLater();
  setWidget(page);
}

void EmptyStateView::addRecents(QVBoxLayout& page) {
  page.addWidget(makeHeader(QStringLiteral(u"最近搜索"), nullptr));
  for (const auto& query : recents_) {
    auto* row = new RecentRow(displayText(query), nullptr);
    page.addWidget(row);
    connect(row, &QPushButton::clicked, this, [this, query] { Q_EMIT recentChosen(query); });
  }
  page.addSpacing(kAroundSeparator);
  page.addWidget(makeSeparator(Qt::Horizontal, nullptr));
  page.addSpacing(kAroundSeparator);
}

void EmptyStateView::addBookmarks(QVBoxLayout& page) {
  page.addWidget(makeHeader(QStringLiteral(u"常用书签"), nullptr));
  auto* chips = new FlowLayout(kChipSpacing);
  chips->setContentsMargins(kSides, kChipsTop, kSides, 0);
  for (const auto& bookmark : bookmarks_) {
    auto* chip = new BookmarkChip(displayText(bookmark.name), nullptr);
    chips->addWidget(chip);
    connect(chip, &QPushButton::clicked, this,
            [this, bookmark] { Q_EMIT bookmarkChosen(bookmark); });
  }
  page.addLayout(chips);
}

void EmptyStateView::enter() {
  const auto entries = widget()->findChildren<PlainButton*>();
  if (!entries.isEmpty()) entries.front()->setFocus(Qt::TabFocusReason);
}

/// Arrow keys go from entry to entry.
bool EmptyStateView::eventFilter(QObject* watched, QEvent* event) {
  auto* entry = qobject_cast<PlainButton*>(watched);
  if (entry == nullptr) return QScrollArea::eventFilter(watched, event);
  if (event->type() == QEvent::FocusIn) ensureWidgetVisible(entry);
  return event->type() == QEvent::KeyPress && goFrom(*entry, static_cast<QKeyEvent*>(event)->key());
}

/// Answers whether the key is one that goes somewhere.
bool EmptyStateView::goFrom(PlainButton& entry, int key) {
  const bool isBack = key == Qt::Key_Up || key == Qt::Key_Left;
  if (!isBack && key != Qt::Key_Down && key != Qt::Key_Right) return false;
  const auto entries = widget()->findChildren<PlainButton*>();
  const auto next = entries.indexOf(&entry) + (isBack ? -1 : 1);
  if (next < 0) {
    Q_EMIT leftUpwards();
  } else if (next < entries.size()) {
    entries[next]->setFocus(Qt::TabFocusReason);
  }
  return true;
}

}  // namespace zelnor::ui
