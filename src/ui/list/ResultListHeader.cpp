#include "ui/list/ResultListHeader.h"

#include <QEvent>
#include <QPainter>

#include "search/SearchViewModel.h"
#include "ui/Palette.h"
#include "ui/PlainButton.h"
#include "ui/Symbol.h"
#include "ui/Typography.h"
#include "ui/list/ResultRowGeometry.h"

namespace zelnor::ui {

namespace {
constexpr int kHeaderHeight = 26;
constexpr int kArrow = 9;
constexpr int kArrowGap = 3;
}  // namespace

class ResultListHeader::Cell final : public PlainButton {
 public:
  Cell(const QString& title, SortField field, Qt::AlignmentFlag side, QWidget* parent)
      : PlainButton(title, parent), field_(field), side_(side) {}

  void showSorting(const SearchViewModel& viewModel) {
    isSorting_ = viewModel.sortBy() == field_;
    isAscending_ = viewModel.sortAscending();
    setFont(type::font(type::kDetail, isSorting_ ? QFont::DemiBold : QFont::Normal));
    setAccessibleDescription(isSorting_ ? direction() : QString());
    update();
  }

  void paint(QPainter& painter) override {
    const bool isAccented = isSorting_ || isDown() || underMouse();
    const auto& color = isAccented ? palette::kText : palette::kSecondaryText;
    const int text = fontMetrics().horizontalAdvance(title());
    const int arrow = isSorting_ ? kArrowGap + type::scaled(kArrow) : 0;
    const int left = side_ == Qt::AlignRight ? width() - text - arrow : 0;
    painter.setPen(color);
    painter.drawText(QRect(left, 0, text, height()), Qt::AlignVCenter | Qt::TextSingleLine,
                     title());
    if (!isSorting_) return;
    const int side = type::scaled(kArrow);
    const QRectF box(left + text + kArrowGap, (height() - side) / 2.0, side, side);
    paintSymbol(painter, box, QLatin1String(isAscending_ ? "arrow.up" : "arrow.down"), color);
  }

 private:
  [[nodiscard]] QString direction() const {
    return isAscending_ ? QStringLiteral(u"升序") : QStringLiteral(u"降序");
  }

  SortField field_;
  Qt::AlignmentFlag side_;
  bool isSorting_ = false;
  bool isAscending_ = true;
};

ResultListHeader::ResultListHeader(const SearchViewModel& viewModel, QWidget* parent)
    : QWidget(parent),
      viewModel_(viewModel),
      name_(addCell(QStringLiteral(u"名称"), SortField::name, Qt::AlignLeft)),
      location_(addCell(QStringLiteral(u"路径"), SortField::path, Qt::AlignLeft)),
      size_(addCell(QStringLiteral(u"大小"), SortField::size, Qt::AlignRight)),
      date_(addCell(QStringLiteral(u"修改日期"), SortField::date, Qt::AlignRight)) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(&viewModel, &SearchViewModel::sortByChanged, this, &ResultListHeader::showSorting);
  connect(&viewModel, &SearchViewModel::sortAscendingChanged, this, &ResultListHeader::showSorting);
  showSorting();
}

ResultListHeader::Cell* ResultListHeader::addCell(const QString& title, SortField field,
                                                  Qt::AlignmentFlag side) {
  auto* cell = new Cell(title, field, side, this);
  connect(cell, &QPushButton::clicked, this, [this, field] { Q_EMIT sortChosen(field); });
  return cell;
}

QSize ResultListHeader::sizeHint() const { return {0, type::scaled(kHeaderHeight)}; }

bool ResultListHeader::event(QEvent* event) {
  if (event->type() == QEvent::ApplicationFontChange) {
    showSorting();
    updateGeometry();
    placeCells();
  }
  return QWidget::event(event);
}

void ResultListHeader::paintEvent(QPaintEvent* /*event*/) {
  QPainter(this).fillRect(rect(), palette::kBar);
}

void ResultListHeader::resizeEvent(QResizeEvent* /*event*/) { placeCells(); }

void ResultListHeader::placeCells() {
  const auto places = ResultHeaderGeometry::of(rect());
  const auto place = [](Cell* cell, const QRect& at) {
    cell->setGeometry(at);
    cell->setVisible(!at.isEmpty());
  };
  place(name_, places.name);
  place(location_, places.location);
  place(size_, places.size);
  place(date_, places.date);
}

void ResultListHeader::showSorting() {
  for (auto* cell : {name_, location_, size_, date_}) cell->showSorting(viewModel_);
}

}  // namespace zelnor::ui
