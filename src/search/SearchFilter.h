#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include "search/Date.h"
#include "search/DatePreset.h"
#include "search/FileTypeCategory.h"
#include "search/SizePreset.h"

namespace zelnor {

/// What narrows a search besides its text. Each custom bound, where present, takes the place of the
/// preset's bound on its side, whatever the preset.
struct SearchFilter {
  FileTypeCategory category = FileTypeCategory::all;
  SizePreset sizePreset = SizePreset::any;
  DatePreset datePreset = DatePreset::any;
  std::optional<std::int64_t> customMinSize = std::nullopt;  ///< bytes
  std::optional<std::int64_t> customMaxSize = std::nullopt;  ///< bytes
  std::optional<Date> customFromDate = std::nullopt;
  std::optional<Date> customToDate = std::nullopt;

  /// The filter that lets everything through.
  static const SearchFilter empty;

  /// Whether any field differs from `empty`.
  [[nodiscard]] bool isActive() const;

  [[nodiscard]] std::optional<std::int64_t> minSize() const;
  [[nodiscard]] std::optional<std::int64_t> maxSize() const;
  /// The earliest modification time, with presets counted back from `now` in the user's time zone.
  [[nodiscard]] std::optional<Date> fromDate(Date now) const;
  /// The latest modification time; no preset has one.
  [[nodiscard]] std::optional<Date> toDate() const { return customToDate; }

  friend bool operator==(const SearchFilter&, const SearchFilter&) = default;
};

inline const SearchFilter SearchFilter::empty{};

}  // namespace zelnor

template <>
struct std::hash<zelnor::SearchFilter> {
  std::size_t operator()(const zelnor::SearchFilter& filter) const noexcept;
};
