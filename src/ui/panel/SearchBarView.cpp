#include "ui/panel/SearchBarView.h"

#include <array>

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "search/SearchViewModel.h"
#include "ui/DisplayText.h"
#include "ui/Palette.h"
#include "ui/TextLabel.h"
#include "ui/panel/NativeSearchTextField.h"
#include "ui/panel/SearchBarParts.h"
#include "ui/panel/TypeChip.h"

namespace zelnor::ui {

namespace {

constexpr int kInputRow = 64;
constexpr int kChipRow = 40;
constexpr int kPill = 44;
constexpr int kField = 22;
constexpr int kBarSides = 16;
constexpr int kPillSides = 14;
constexpr int kButtonSymbol = 16;

constexpr std::array kChips{FileTypeCategory::all,   FileTypeCategory::folder,
                            FileTypeCategory::image, FileTypeCategory::document,
                            FileTypeCategory::video, FileTypeCategory::audio,
                            FileTypeCategory::code};

}  // namespace

SearchBarView::SearchBarView(SearchViewModel& search, QWidget* parent)
    : QWidget(parent),
      search_(search),
      pill_(new Pill(this)),
      magnifier_(new Magnifier(pill_)),
      field_(new NativeSearchTextField(QStringLiteral(u"搜索文件、文件夹..."), pill_)),
      clear_(new ClearButton(pill_)),
      bookmarks_(new SymbolButton(QLatin1String("bookmark"), kButtonSymbol,
                                  QStringLiteral(u"搜索书签"), pill_)),
      chips_(new ChoiceGroup(this)) {
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addLayout(makeInputRow());
  rows->addWidget(makeSeparator(Qt::Horizontal, this));
  rows->addWidget(makeChipRow());
  rows->addWidget(makeSeparator(Qt::Horizontal, this));

  connect(field_, &QLineEdit::textEdited, this,
          [this](const QString& text) { search_.setQueryText(text.toStdString()); });
  connect(field_, &QLineEdit::textChanged, clear_,
          [this](const QString& text) { clear_->setShown(!text.isEmpty()); });
  connect(clear_, &QPushButton::clicked, this, [this] {
    search_.setQueryText({});
    field_->setFocus();
  });
  connect(bookmarks_, &QPushButton::clicked, this, &SearchBarView::bookmarksToggled);
  connect(chips_, &QButtonGroup::idClicked, this, [this](int id) {
    auto filter = search_.filter();
    filter.category = static_cast<FileTypeCategory>(id);
    search_.setFilter(filter);
  });
  connect(&search, &SearchViewModel::queryTextChanged, this,
          [this] { field_->setBoundText(QString::fromStdString(search_.queryText())); });
  connect(&search, &SearchViewModel::filterChanged, this, [this] { showFilter(search_.filter()); });
  connect(&search, &SearchViewModel::isSearchingChanged, magnifier_,
          [this] { magnifier_->setPulsing(search_.isSearching()); });
  field_->setBoundText(QString::fromStdString(search.queryText()));
  showFilter(search.filter());
}

QLayout* SearchBarView::makeInputRow() {
  pill_->setFixedHeight(kPill);
  field_->setFixedHeight(type::scaled(kField));
  auto* settings =
      new SymbolButton(QLatin1String("gearshape"), kButtonSymbol, QStringLiteral(u"设置"), pill_);
  connect(settings, &QPushButton::clicked, this, &SearchBarView::settingsRequested);
  auto* inside = new QHBoxLayout(pill_);
  inside->setContentsMargins(kPillSides, 0, kPillSides - 4, 0);
  inside->setSpacing(2);
  inside->addWidget(magnifier_);
  inside->addSpacing(6);
  inside->addWidget(field_, /*stretch=*/1);
  inside->addWidget(clear_);
  inside->addWidget(bookmarks_);
  inside->addWidget(settings);

  auto* row = new QHBoxLayout;
  constexpr int kAround = (kInputRow - kPill) / 2;
  row->setContentsMargins(kBarSides, kAround, kBarSides - 4, kAround);
  row->setSpacing(0);
  row->addWidget(pill_);
  row->addSpacing(8);
  const auto add = [&](const char* symbol, const QString& title, auto signal) {
    auto* button = new WindowButton(QLatin1String(symbol), title, this);
    connect(button, &QPushButton::clicked, this, signal);
    row->addWidget(button);
  };
  add("minus", QStringLiteral(u"最小化"), &SearchBarView::minimizeRequested);
  add("xmark", QStringLiteral(u"关闭"), &SearchBarView::closeRequested);
  return row;
}

QWidget* SearchBarView::makeChipRow() {
  auto* chips = new QWidget;
  chips->setAccessibleName(QStringLiteral(u"文件类型"));
  auto* inside = new QHBoxLayout(chips);
  inside->setContentsMargins(kBarSides, 0, 0, 0);
  inside->setSpacing(8);
  for (const auto category : kChips) {
    auto* chip = new TypeChip(displayText(label(category)), chips);
    chips_->addButton(chip, static_cast<int>(category));
    inside->addWidget(chip);
  }
  inside->addStretch();

  auto* row = new QWidget(this);
  row->setFixedHeight(type::scaled(kChipRow));
  filters_ = new FilterToggle(row);
  connect(filters_, &QPushButton::clicked, this, &SearchBarView::filtersToggled);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, kBarSides - 4, 0);
  layout->setSpacing(8);
  layout->addWidget(new ChipRow(chips, row), /*stretch=*/1);
  layout->addWidget(filters_);
  return row;
}

void SearchBarView::setBookmarksShown(bool areShown) {
  bookmarks_->setSymbol(QLatin1String(areShown ? "bookmark.fill" : "bookmark"),
                        areShown ? palette::kAccent : palette::kSecondaryText);
  bookmarks_->setAccessibleDescription(areShown ? QStringLiteral(u"已显示") : QString());
}

void SearchBarView::setFiltersShown(bool areShown) {
  filters_->setAccessibleDescription(areShown ? QStringLiteral(u"已显示") : QString());
}

int SearchBarView::activeFilterCount(const SearchFilter& filter) {
  return (filter.sizePreset != SizePreset::any ? 1 : 0) +
         (filter.datePreset != DatePreset::any ? 1 : 0);
}

void SearchBarView::showFilter(const SearchFilter& filter) {
  chips_->choose(static_cast<int>(filter.category));
  filters_->setCount(activeFilterCount(filter));
}

void SearchBarView::paintEvent(QPaintEvent* /*event*/) {
  QPainter(this).fillRect(rect(), palette::kPanel);
}

}  // namespace zelnor::ui
