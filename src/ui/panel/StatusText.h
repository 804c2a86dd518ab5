#pragma once

#include <cstdint>
#include <optional>

#include <QLocale>
#include <QString>

#include "search/SortField.h"
#include "ui/DisplayText.h"

namespace zelnor::ui {

/// Everything that the status line may have to tell.
struct StatusFacts {
  std::optional<QString> error;  ///< of the search
  bool isSearching = false;
  bool isIndexing = false;
  std::int64_t processedFiles = 0;  ///< by the rebuild that runs
  std::optional<QString> notice;    ///< what keeps the index from being up to date
  std::int64_t resultCount = 0;
  bool isIncomplete = false;    ///< there may be more results than that
  std::int64_t totalFiles = 0;  ///< in the index

  friend bool operator==(const StatusFacts&, const StatusFacts&) = default;
};

/// The one thing it tells.
struct StatusText {
  enum class Tone : std::uint8_t { error, normal, faint };

  QString text;
  Tone tone = Tone::normal;
  bool isBusy = false;  ///< shown with a spinner

  friend bool operator==(const StatusText&, const StatusText&) = default;
};

/// What matters most: an error, then what is under way, then what there is.
StatusText statusText(const StatusFacts& facts, const QLocale& locale = displayLocale());

/// The title of the sort menu, as in "排序：大小 ↓".
QString sortTitle(SortField field, bool ascending);

}  // namespace zelnor::ui
