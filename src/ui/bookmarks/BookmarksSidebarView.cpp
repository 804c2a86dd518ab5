#include "ui/bookmarks/BookmarksSidebarView.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "bookmarks/BookmarkViewModel.h"
#include "ui/Palette.h"
#include "ui/PlainButton.h"
#include "ui/Symbol.h"
#include "ui/TextLabel.h"
#include "ui/Typography.h"
#include "ui/bookmarks/AddBookmarkSheet.h"
#include "ui/bookmarks/BookmarksList.h"
#include "ui/bookmarks/RenameCategorySheet.h"

namespace zelnor::ui {

namespace {

constexpr int kSidebarWidth = 220;
constexpr int kHeaderSides = 10;
constexpr int kHeaderPadding = 8;
constexpr int kButtonPadding = 6;  // of a symbol button, around its symbol

/// A symbol before a text.
class NewCategoryButton final : public PlainButton {
 public:
  explicit NewCategoryButton(QWidget* parent) : PlainButton(QStringLiteral(u"新建分类"), parent) {
    setFont(type::font(type::kCaption));
  }
  [[nodiscard]] QSize sizeHint() const override {
    const int text = fontMetrics().horizontalAdvance(title());
    const int height = std::max(fontMetrics().height(), type::scaled(kSymbol));
    return {2 * kPadding + type::scaled(kSymbol) + kGap + text, 2 * kPadding + height};
  }

 protected:
  void paint(QPainter& painter) override {
    const auto color = underMouse() || isDown() ? palette::kText : palette::kSecondaryText;
    const int side = type::scaled(kSymbol);
    const QRect symbol(kPadding, (height() - side) / 2, side, side);
    paintSymbol(painter, symbol, QLatin1String("folder.badge.plus"), color);
    painter.setPen(color);
    painter.drawText(rect().adjusted(symbol.right() + 1 + kGap, 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, title());
  }

 private:
  static constexpr int kPadding = 8;
  static constexpr int kSymbol = 11;
  static constexpr int kGap = 6;
};

}  // namespace

BookmarksSidebarView::BookmarksSidebarView(BookmarkViewModel& bookmarks, QWidget& panel,
                                           QWidget* parent)
    : QWidget(parent),
      bookmarks_(bookmarks),
      panel_(panel),
      header_(makeHeader()),
      list_(new BookmarksList(bookmarks, this)) {
  setAccessibleName(QStringLiteral(u"书签"));
  setAutoFillBackground(true);
  setPalette(QPalette(palette::kSidebar, palette::kSidebar));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(header_);
  column->addWidget(makeSeparator(Qt::Horizontal, this));
  column->addWidget(list_, /*stretch=*/1);
  column->addWidget(makeSeparator(Qt::Horizontal, this));
  column->addWidget(makeFooter());
  connect(list_, &BookmarksList::chosen, this, &BookmarksSidebarView::chosen);
  connect(list_, &BookmarksList::renameRequested, this, &BookmarksSidebarView::openRenameSheet);
}

QSize BookmarksSidebarView::sizeHint() const {
  return {type::scaled(kSidebarWidth), QWidget::sizeHint().height()};
}

QWidget* BookmarksSidebarView::makeHeader() {
  auto* header = new QWidget(this);
  auto* title = makeText(QStringLiteral(u"书签"), type::kLabel, palette::kSecondaryText, header,
                         QFont::DemiBold);
  auto* add = new SymbolButton(QLatin1String("plus"), /*symbolSize=*/11,
                               QStringLiteral(u"新建书签"), header);
  connect(add, &QPushButton::clicked, this, &BookmarksSidebarView::newRequested);
  auto* row = new QHBoxLayout(header);
  row->setContentsMargins(kHeaderSides, 0, kHeaderSides - kButtonPadding, 0);
  row->addWidget(title);
  row->addStretch();
  row->addWidget(add);
  header->setFixedHeight(title->sizeHint().height() + 2 * kHeaderPadding);
  return header;
}

QWidget* BookmarksSidebarView::makeFooter() {
  auto* footer = new QWidget(this);
  auto* add = new NewCategoryButton(footer);
  connect(add, &QPushButton::clicked, this, &BookmarksSidebarView::addCategory);
  auto* row = new QHBoxLayout(footer);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(add);
  row->addStretch();
  return footer;
}

void BookmarksSidebarView::addCategory() {
  bookmarks_.addCategory("新分类");
  list_->scrollToBottom();
}

void BookmarksSidebarView::openAddSheet() {
  if (sheet_ != nullptr) return;
  open(new AddBookmarkSheet(bookmarks_, panel_));
}

void BookmarksSidebarView::openRenameSheet(const Uuid& id) {
  const auto& categories = bookmarks_.categories();
  const auto category = std::ranges::find(categories, id, &BookmarkCategory::id);
  if (sheet_ != nullptr || category == categories.end()) return;
  auto rename = [&bookmarks = bookmarks_, id](const std::string& name) {
    bookmarks.renameCategory(id, name);
  };
  open(new RenameCategorySheet(category->name, rename, panel_));
}

void BookmarksSidebarView::open(Sheet* sheet) {
  sheet_ = sheet;
  connect(sheet, &Sheet::closed, this, [this] { sheet_ = nullptr; });
  sheet->open();
}

}  // namespace zelnor::ui
