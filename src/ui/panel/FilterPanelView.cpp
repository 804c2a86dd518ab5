#include "ui/panel/FilterPanelView.h"

#include <array>
#include <limits>

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "search/MatchMode.h"
#include "search/SearchViewModel.h"
#include "ui/DisplayText.h"
#include "ui/Palette.h"
#include "ui/PlainButton.h"
#include "ui/SlidingPane.h"
#include "ui/TextLabel.h"
#include "ui/panel/FilterColumn.h"
#include "ui/panel/FilterRadioRow.h"

namespace zelnor::ui {

namespace {

constexpr int kPanelSides = 16;
constexpr int kRowMargin = 8;
constexpr int kDividerInset = 12;
constexpr int kDividerSides = 12;
constexpr int kNoteGap = 4;

/// One row a case.
template <class Enum>
FilterColumn* makeColumn(const QString& title, ChoiceGroup& group, QWidget* parent) {
  auto* column = new FilterColumn(title, parent);
  for (const auto& item : kCases<Enum>) {
    if constexpr (std::is_same_v<Enum, DatePreset>) {
      if (item.value == DatePreset::custom) continue;  // nothing here asks for the dates
    }
    auto* row = new FilterRadioRow(displayText(label(item.value)), column);
    group.addButton(row, static_cast<int>(item.value));
    column->addRow(row);
  }
  return column;
}

QLayout* makeDivider(QWidget* parent) {
  auto* layout = new QVBoxLayout;
  layout->setContentsMargins(0, kDividerInset, kDividerSides, kDividerInset);
  layout->addWidget(makeSeparator(Qt::Vertical, parent));
  return layout;
}

class ResetButton final : public PlainButton {
 public:
  explicit ResetButton(QWidget* parent) : PlainButton(QStringLiteral(u"清除筛选"), parent) {
    setFont(type::font(type::kLabel, QFont::Medium));
  }
  [[nodiscard]] QSize sizeHint() const override {
    constexpr int kHeight = 16;
    return {fontMetrics().horizontalAdvance(title()), type::scaled(kHeight)};
  }

 protected:
  void paint(QPainter& painter) override {
    painter.setPen(underMouse() ? palette::kRed.darker(120) : palette::kRed);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, title());
  }
};

}  // namespace

FilterPanelView::FilterPanelView(SearchViewModel& search, QWidget* parent)
    : QScrollArea(parent),
      search_(search),
      sizes_(new ChoiceGroup(this)),
      dates_(new ChoiceGroup(this)),
      modes_(new ChoiceGroup(this)),
      heightLimit_(std::numeric_limits<int>::max()) {
  setFrameShape(NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  setAccessibleName(QStringLiteral(u"筛选"));
  auto* strip = new QWidget;
  auto* layout = new QVBoxLayout(strip);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(makeColumns(strip));
  reset_ = new SlidingPane(makeReset(strip), SlidingPane::Edge::top, strip);
  layout->addWidget(reset_);
  layout->addStretch();
  setWidget(strip);
  strip->installEventFilter(this);

  connect(sizes_, &QButtonGroup::idClicked, this, [this](int id) {
    change([id](SearchFilter& filter) { filter.sizePreset = static_cast<SizePreset>(id); });
  });
  connect(dates_, &QButtonGroup::idClicked, this, [this](int id) {
    change([id](SearchFilter& filter) { filter.datePreset = static_cast<DatePreset>(id); });
  });
  connect(modes_, &QButtonGroup::idClicked, this, [this](int id) {
    search_.setQueryText(switchedMode(search_.queryText(), static_cast<MatchMode>(id)));
    showMatchMode();
  });
  connect(&search, &SearchViewModel::filterChanged, this, [this] { showFilter(search_.filter()); });
  connect(&search, &SearchViewModel::queryTextChanged, this, &FilterPanelView::showMatchMode);
  showFilter(search.filter());
  showMatchMode();
}

QWidget* FilterPanelView::makeColumns(QWidget* parent) {
  auto* columns = new QWidget(parent);
  auto* layout = new QHBoxLayout(columns);
  layout->setContentsMargins(kPanelSides, kRowMargin, kPanelSides, kRowMargin);
  layout->setSpacing(0);
  layout->addWidget(makeColumn<SizePreset>(QStringLiteral(u"文件大小"), *sizes_, columns), 1);
  layout->addLayout(makeDivider(columns));
  layout->addWidget(makeColumn<DatePreset>(QStringLiteral(u"修改日期"), *dates_, columns), 1);
  layout->addLayout(makeDivider(columns));
  layout->addWidget(makeMatchColumn(columns), 1);
  return columns;
}

FilterColumn* FilterPanelView::makeMatchColumn(QWidget* parent) {
  auto* column = makeColumn<MatchMode>(QStringLiteral(u"匹配方式"), *modes_, parent);
  auto* note = makeText(QStringLiteral(u"通配符：* 任意字符，? 单个字符\n正则：等同于 r: 前缀"),
                        type::kCaption, palette::kFaintText, column);
  column->addNote(note, kNoteGap);
  return column;
}

QWidget* FilterPanelView::makeReset(QWidget* parent) {
  auto* row = new QWidget(parent);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(kPanelSides, 0, kPanelSides, kRowMargin);
  auto* button = new ResetButton(row);
  layout->addStretch();
  layout->addWidget(button);
  connect(button, &QPushButton::clicked, this, [this] { search_.setFilter(SearchFilter::empty); });
  return row;
}

template <class Change>
void FilterPanelView::change(const Change& change) {
  auto filter = search_.filter();
  change(filter);
  search_.setFilter(filter);
}

void FilterPanelView::showFilter(const SearchFilter& filter) {
  sizes_->choose(static_cast<int>(filter.sizePreset));
  dates_->choose(static_cast<int>(filter.datePreset));
  reset_->setOpen(filter.isActive());
  updateGeometry();
}

void FilterPanelView::showMatchMode() {
  modes_->choose(static_cast<int>(currentMatchMode(search_.queryText())));
}

void FilterPanelView::setHeightLimit(int limit) {
  if (limit == heightLimit_) return;
  heightLimit_ = limit;
  updateGeometry();
}

QSize FilterPanelView::sizeHint() const {
  return widget()->sizeHint().boundedTo({std::numeric_limits<int>::max(), heightLimit_});
}

/// The strip grows and shrinks with what it shows.
bool FilterPanelView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
}

}  // namespace zelnor::ui
