#include "search/SearchFilter.h"

#include <bit>

namespace zelnor {

bool SearchFilter::isActive() const { return *this != empty; }

std::optional<std::int64_t> SearchFilter::minSize() const {
  return customMinSize ? customMinSize : lowerBound(sizePreset);
}

std::optional<std::int64_t> SearchFilter::maxSize() const {
  return customMaxSize ? customMaxSize : upperBound(sizePreset);
}

std::optional<Date> SearchFilter::fromDate(Date now) const {
  return customFromDate ? customFromDate : zelnor::fromDate(datePreset, now);
}

}  // namespace zelnor

std::size_t std::hash<zelnor::SearchFilter>::operator()(
    const zelnor::SearchFilter& filter) const noexcept {
  std::size_t seed = 0;
  const auto mix = [&seed](const auto& value) {
    seed = std::rotl(seed, 7) ^
           (std::hash<std::decay_t<decltype(value)>>{}(value) * 0x9E3779B97F4A7C15ULL);
  };
  const auto mixDate = [&mix](const std::optional<zelnor::Date>& date) {
    mix(date ? std::optional(date->sinceReference) : std::nullopt);
  };
  mix(filter.category);
  mix(filter.sizePreset);
  mix(filter.datePreset);
  mix(filter.customMinSize);
  mix(filter.customMaxSize);
  mixDate(filter.customFromDate);
  mixDate(filter.customToDate);
  return seed;
}
