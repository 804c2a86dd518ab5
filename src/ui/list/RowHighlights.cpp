#include "ui/list/RowHighlights.h"

#include <algorithm>
#include <utility>

#include "ui/Palette.h"
#include "ui/Style.h"

namespace zelnor::ui {

namespace {

constexpr int kSelectionTime = 100;  // ms
constexpr int kHoverTime = 80;       // ms
constexpr int kFrame = 16;           // ms

QColor mixed(const QColor& from, const QColor& to, double amount) {
  const auto part = static_cast<float>(amount);
  const auto mix = [part](float a, float b) { return a + (b - a) * part; };
  return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                          mix(from.blueF(), to.blueF()));
}

}  // namespace

RowHighlights::RowHighlights(const QWidget& view, QObject* parent)
    : QObject(parent),
      selection_(RowFades::Time(motionTime(view, kSelectionTime))),
      hover_(RowFades::Time(motionTime(view, kHoverTime))) {
  clock_.start();
  frame_.setInterval(kFrame);
  frame_.setTimerType(Qt::PreciseTimer);
  connect(&frame_, &QTimer::timeout, this, &RowHighlights::advance);
}

void RowHighlights::show(std::vector<Row> rows) {
  for (const auto& row : rows) {
    const auto before = std::ranges::find(rows_, row.id, &Row::id);
    if (before == rows_.end() || before->isSelected == row.isSelected) continue;
    selection_.turn(row.id, row.isSelected, now());
    follow(row.id);
  }
  rows_ = std::move(rows);
}

void RowHighlights::setHovered(std::optional<std::int64_t> id) {
  if (id == hovered_) return;
  const auto left = std::exchange(hovered_, id);
  if (left) {
    hover_.turn(*left, false, now());
    follow(*left);
  }
  if (hovered_) {
    hover_.turn(*hovered_, true, now());
    follow(*hovered_);
  }
}

QColor RowHighlights::background(std::int64_t id, bool isSelected) const {
  const auto time = now();
  const double hover = hover_.amount(id, id == hovered_, time);
  const double selection = selection_.amount(id, isSelected, time);
  return mixed(mixed(palette::kPanel, palette::kHover, hover), palette::kSelection, selection);
}

void RowHighlights::follow(std::int64_t id) {
  Q_EMIT changed(id);
  const bool isMoving = !selection_.isEmpty() || !hover_.isEmpty();
  if (isMoving && !frame_.isActive()) frame_.start();
}

void RowHighlights::advance() {
  for (auto* fades : {&selection_, &hover_}) {
    for (const auto id : fades->advance(now())) Q_EMIT changed(id);
  }
  if (selection_.isEmpty() && hover_.isEmpty()) frame_.stop();
}

}  // namespace zelnor::ui
