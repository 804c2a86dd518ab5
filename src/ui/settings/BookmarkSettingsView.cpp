#include "ui/settings/BookmarkSettingsView.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QMouseEvent>
#include <QVBoxLayout>

#include "bookmarks/BookmarkViewModel.h"
#include "ui/DisplayText.h"
#include "ui/Menu.h"
#include "ui/Palette.h"
#include "ui/PlainButton.h"
#include "ui/TextLabel.h"
#include "ui/bookmarks/RenameCategorySheet.h"
#include "ui/settings/BookmarkSettingsRow.h"

namespace zelnor::ui {

namespace {

constexpr int kNarrowest = 140;
constexpr int kWidest = 180;
constexpr int kBarPadding = 8;
constexpr int kButtonSymbol = 14;

/// A list in which a press beside the rows deselects.
class RowList final : public QListWidget {
 public:
  RowList(const QString& title, QWidget* parent) : QListWidget(parent) {
    setAccessibleName(title);
    setFrameShape(NoFrame);
    setItemDelegate(new BookmarkSettingsRow(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setUniformItemSizes(false);
  }

 protected:
  /// Coming with the keyboard selects nothing yet.
  void focusInEvent(QFocusEvent* event) override {
    const QSignalBlocker nobodyChooses(this);
    const bool hadCurrent = currentItem() != nullptr;
    QListWidget::focusInEvent(event);
    if (!hadCurrent) setCurrentItem(nullptr);
  }
  void mousePressEvent(QMouseEvent* event) override {
    QListWidget::mousePressEvent(event);
    if (!indexAt(event->pos()).isValid()) setCurrentItem(nullptr);
  }
};

QWidget* makeHeader(const QString& title, QWidget* parent) {
  auto* header = makeText(title, type::kCaption, palette::kSecondaryText, parent);
  header->setContentsMargins(12, 12, 12, 4);
  return header;
}

QListWidgetItem* makeRow(const Uuid& id, const QString& name, const QString& description) {
  auto* row = new QListWidgetItem(name);
  row->setData(BookmarkSettingsRow::idRole, QString::fromStdString(id.text()));
  row->setData(BookmarkSettingsRow::descriptionRole, description);
  row->setData(Qt::AccessibleDescriptionRole, description);
  return row;
}

std::optional<Uuid> idOf(const QListWidgetItem* row) {
  if (row == nullptr) return std::nullopt;
  return Uuid::parse(row->data(BookmarkSettingsRow::idRole).toString().toStdString());
}

void select(QListWidget& list, const std::optional<Uuid>& id) {
  list.setCurrentItem(nullptr);
  for (int row = 0; id && row < list.count(); ++row) {
    if (idOf(list.item(row)) == id) list.setCurrentRow(row);
  }
}

/// The list under its title, over a bar with the button.
QWidget* makePane(const QString& title, QListWidget* list, QWidget* button, QWidget* parent) {
  auto* pane = new QWidget(parent);
  auto* parts = new QVBoxLayout(pane);
  parts->setContentsMargins(0, 0, 0, 0);
  parts->setSpacing(0);
  auto* bar = new QHBoxLayout;
  bar->setContentsMargins(kBarPadding, kBarPadding, kBarPadding, kBarPadding);
  bar->addWidget(button);
  bar->addStretch();
  parts->addWidget(makeHeader(title, pane));
  parts->addWidget(list, /*stretch=*/1);
  parts->addWidget(makeSeparator(Qt::Horizontal, pane));
  parts->addLayout(bar);
  return pane;
}

}  // namespace

BookmarkSettingsView::BookmarkSettingsView(BookmarkViewModel& bookmarks, QWidget& window,
                                           QWidget* parent)
    : QWidget(parent),
      bookmarkVM_(bookmarks),
      window_(window),
      categories_(new RowList(QStringLiteral(u"分类"), this)),
      bookmarks_(new RowList(QStringLiteral(u"书签"), this)) {
  auto* panes = new QHBoxLayout(this);
  panes->setContentsMargins(0, 0, 0, 0);
  panes->setSpacing(0);
  panes->addWidget(makeCategoryPane());
  panes->addWidget(makeSeparator(Qt::Vertical, this));
  panes->addWidget(makeBookmarkPane(), /*stretch=*/1);
  using Model = BookmarkViewModel;
  connect(&bookmarks, &Model::categoriesChanged, this, &BookmarkSettingsView::showCategories);
  connect(&bookmarks, &Model::bookmarksChanged, this, &BookmarkSettingsView::showBookmarks);
  connect(&bookmarks, &Model::selectedCategoryIDChanged, this,
          &BookmarkSettingsView::showCategories);
  connect(&bookmarks, &Model::selectedCategoryIDChanged, this,
          &BookmarkSettingsView::showBookmarks);
  connect(categories_, &QListWidget::currentItemChanged, this,
          &BookmarkSettingsView::chooseCategory);
  connect(bookmarks_, &QListWidget::currentItemChanged, this,
          &BookmarkSettingsView::chooseBookmark);
  connect(bookmarks_, &QWidget::customContextMenuRequested, this, &BookmarkSettingsView::openMenu);
  showCategories();
  showBookmarks();
}

QWidget* BookmarkSettingsView::makeCategoryPane() {
  auto* plus =
      new SymbolButton(QLatin1String("plus"), kButtonSymbol, QStringLiteral(u"新建分类"), this);
  connect(plus, &QPushButton::clicked, this, &BookmarkSettingsView::askForCategory);
  auto* pane = makePane(QStringLiteral(u"分类"), categories_, plus, this);
  pane->setMinimumWidth(type::scaled(kNarrowest));
  pane->setMaximumWidth(type::scaled(kWidest));
  pane->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  return pane;
}

QWidget* BookmarkSettingsView::makeBookmarkPane() {
  trash_ = new SymbolButton(QLatin1String("trash"), kButtonSymbol, QStringLiteral(u"删除"), this);
  trash_->setSymbol(QLatin1String("trash"), palette::kRed);
  auto keepsPlace = trash_->sizePolicy();
  keepsPlace.setRetainSizeWhenHidden(true);
  trash_->setSizePolicy(keepsPlace);
  connect(trash_, &QPushButton::clicked, this, [this] {
    if (const auto id = selectedBookmark_) deleteBookmark(*id);
  });
  return makePane(QStringLiteral(u"书签"), bookmarks_, trash_, this);
}

void BookmarkSettingsView::showCategories() {
  isShowing_ = true;
  categories_->clear();
  for (const auto& category : bookmarkVM_.categories()) {
    categories_->addItem(makeRow(category.id, displayText(category.name), {}));
  }
  select(*categories_, bookmarkVM_.selectedCategoryID());
  isShowing_ = false;
}

void BookmarkSettingsView::showBookmarks() {
  isShowing_ = true;
  bookmarks_->clear();
  for (const auto& bookmark : bookmarkVM_.bookmarksIn(bookmarkVM_.selectedCategoryID())) {
    bookmarks_->addItem(makeRow(bookmark.id, displayText(bookmark.name),
                                displayText(bookmark.displayDescription())));
  }
  select(*bookmarks_, selectedBookmark_);
  isShowing_ = false;
  chooseBookmark();
}

void BookmarkSettingsView::chooseCategory() {
  if (!isShowing_) bookmarkVM_.setSelectedCategoryID(idOf(categories_->currentItem()));
}

void BookmarkSettingsView::chooseBookmark() {
  if (isShowing_) return;
  selectedBookmark_ = idOf(bookmarks_->currentItem());
  trash_->setVisible(selectedBookmark_.has_value());
}

void BookmarkSettingsView::deleteBookmark(const Uuid& id) {
  if (selectedBookmark_ == id) selectedBookmark_.reset();
  bookmarkVM_.deleteBookmark(id);
}

void BookmarkSettingsView::openMenu(const QPoint& place) {
  const auto id = idOf(bookmarks_->itemAt(place));
  if (!id) return;
  auto* menu = new Menu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addDestructive(QLatin1String("trash"), QStringLiteral(u"删除"),
                       [this, id = *id] { deleteBookmark(id); });
  menu->popup(bookmarks_->viewport()->mapToGlobal(place));
}

void BookmarkSettingsView::askForCategory() {
  const auto add = [this](const std::string& name) {
    if (!name.empty()) bookmarkVM_.addCategory(name);
  };
  auto* sheet = new RenameCategorySheet({}, add, window_);
  sheet->open();
}

}  // namespace zelnor::ui
