#include "ui/FlowLayout.h"

#include <algorithm>

namespace zelnor::ui {

namespace {

/// Where the next item goes.
class Lines {
 public:
  Lines(const QRect& bounds, int spacing)
      : bounds_(bounds), spacing_(spacing), at_(bounds.topLeft()) {}

  QRect place(const QSize& item) {
    const bool isFirst = at_.x() == bounds_.left();
    if (!isFirst && at_.x() + item.width() > bounds_.left() + bounds_.width()) {
      at_ = {bounds_.left(), at_.y() + lineHeight_ + spacing_};
      lineHeight_ = 0;
    }
    const QRect place(at_, item);
    lineHeight_ = std::max(lineHeight_, item.height());
    at_.rx() += item.width() + spacing_;
    return place;
  }
  [[nodiscard]] int height() const { return at_.y() - bounds_.top() + lineHeight_; }

 private:
  QRect bounds_;
  int spacing_;
  QPoint at_;
  int lineHeight_ = 0;
};

}  // namespace

FlowLayout::FlowLayout(int spacing, QWidget* parent) : QLayout(parent) {
  setContentsMargins(0, 0, 0, 0);
  setSpacing(spacing);
}

QSize FlowLayout::sizeThatFits(int width) const {
  Lines lines({0, 0, width, 0}, spacing());
  for (const auto& item : items_) lines.place(item->sizeHint());
  return {width, lines.height()};
}

void FlowLayout::addItem(QLayoutItem* item) { items_.emplace_back(item); }

QLayoutItem* FlowLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
  if (index < 0 || index >= count()) return nullptr;
  const auto place = items_.begin() + index;
  auto* item = place->release();
  items_.erase(place);
  return item;
}

int FlowLayout::heightForWidth(int width) const {
  const auto margins = contentsMargins();
  return sizeThatFits(width - margins.left() - margins.right()).height() + margins.top() +
         margins.bottom();
}

QSize FlowLayout::minimumSize() const {
  const auto margins = contentsMargins();
  return {margins.left() + margins.right(), margins.top() + margins.bottom()};
}

void FlowLayout::setGeometry(const QRect& bounds) {
  QLayout::setGeometry(bounds);
  Lines lines(bounds.marginsRemoved(contentsMargins()), spacing());
  for (const auto& item : items_) item->setGeometry(lines.place(item->sizeHint()));
}

}  // namespace zelnor::ui
