#include "search/SearchFilter.h"

#include "search/Hash.h"

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
  return zelnor::hashOf(filter.category, filter.sizePreset, filter.datePreset, filter.customMinSize,
                        filter.customMaxSize, filter.customFromDate, filter.customToDate);
}
