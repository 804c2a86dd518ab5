#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "search/LabelledEnum.h"

namespace zelnor {

/// A range of file sizes. Both ends belong to it, so a size on a boundary is in both neighbours.
enum class SizePreset : std::uint8_t { any, tiny, small, medium, large, huge, enormous };

template <>
inline constexpr std::array kCases<SizePreset>{
    LabelledCase{SizePreset::any, "any", "不限大小"},
    LabelledCase{SizePreset::tiny, "tiny", "100KB 以下"},
    LabelledCase{SizePreset::small, "small", "100KB ~ 1MB"},
    LabelledCase{SizePreset::medium, "medium", "1MB ~ 10MB"},
    LabelledCase{SizePreset::large, "large", "10MB ~ 100MB"},
    LabelledCase{SizePreset::huge, "huge", "100MB ~ 1GB"},
    LabelledCase{SizePreset::enormous, "enormous", "1GB 以上"},
};

/// The smallest size in bytes; nothing means no restriction.
std::optional<std::int64_t> lowerBound(SizePreset preset);
/// The greatest size in bytes; nothing means no restriction.
std::optional<std::int64_t> upperBound(SizePreset preset);

}  // namespace zelnor
