#include "ui/list/RowFades.h"

#include <algorithm>

#include <QEasingCurve>

namespace zelnor::ui {

void RowFades::turn(std::int64_t id, bool isOn, Time now) {
  if (duration_ <= Time::zero()) return;
  fades_[id] = {.from = amount(id, !isOn, now), .isOn = isOn, .start = now};
}

double RowFades::amount(std::int64_t id, bool isOn, Time now) const {
  const auto fade = fades_.find(id);
  if (fade == fades_.end()) return isOn ? 1 : 0;
  return amount(fade->second, now);
}

double RowFades::amount(const Fade& fade, Time now) const {
  static const QEasingCurve curve(QEasingCurve::InOutQuad);
  const double progress =
      static_cast<double>((now - fade.start).count()) / static_cast<double>(duration_.count());
  const double to = fade.isOn ? 1 : 0;
  return fade.from + (to - fade.from) * curve.valueForProgress(std::clamp(progress, 0.0, 1.0));
}

std::vector<std::int64_t> RowFades::advance(Time now) {
  std::vector<std::int64_t> moving;
  moving.reserve(fades_.size());
  for (const auto& [id, fade] : fades_) moving.push_back(id);
  std::erase_if(fades_, [&](const auto& item) { return now - item.second.start >= duration_; });
  return moving;
}

}  // namespace zelnor::ui
