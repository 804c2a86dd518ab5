#include "ui/list/RowSelection.h"

#include <algorithm>
#include <iterator>

namespace zelnor::ui {

RowSelection::IdSet RowSelection::after(Gesture gesture, const std::vector<SearchResult>& rows,
                                        std::size_t at, const IdSet& selected) {
  const auto id = rows.at(at).id();
  if (gesture == Gesture::range) {
    if (auto ids = range(rows, at, selected)) return *std::move(ids);
  }
  anchor_ = id;
  if (gesture != Gesture::toggle) return {id};
  auto ids = selected;
  if (ids.erase(id) == 0) ids.insert(id);
  return ids;
}

std::optional<RowSelection::IdSet> RowSelection::range(const std::vector<SearchResult>& rows,
                                                       std::size_t at,
                                                       const IdSet& selected) const {
  if (selected.empty()) return std::nullopt;
  const auto anchor = anchor_ && selected.contains(*anchor_) ? *anchor_ : *selected.begin();
  const auto found = std::ranges::find(rows, anchor, &SearchResult::id);
  if (found == rows.end()) return std::nullopt;
  const auto from = static_cast<std::size_t>(std::distance(rows.begin(), found));
  const auto last = std::max(from, at);
  IdSet ids;
  for (auto row = std::min(from, at); row <= last; ++row) ids.insert(rows[row].id());
  return ids;
}

}  // namespace zelnor::ui
