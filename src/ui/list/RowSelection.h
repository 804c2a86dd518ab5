#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "search/SearchViewModel.h"

namespace zelnor::ui {

/// What clicks and keys on rows make of the selection.
class RowSelection {
 public:
  using IdSet = SearchViewModel::IdSet;

  enum class Gesture : std::uint8_t {
    alone,   ///< the row and no other
    toggle,  ///< this row changes, the others stay as they are
    range,   ///< all rows from the anchor to this one
  };

  /// What is selected after `gesture` on the row at position `at`, when `selected` was before.
  IdSet after(Gesture gesture, const std::vector<SearchResult>& rows, std::size_t at,
              const IdSet& selected);

 private:
  [[nodiscard]] std::optional<IdSet> range(const std::vector<SearchResult>& rows, std::size_t at,
                                           const IdSet& selected) const;

  /// Where ranges begin, while it is selected; else they begin at the first of the set.
  std::optional<std::int64_t> anchor_;
};

}  // namespace zelnor::ui
