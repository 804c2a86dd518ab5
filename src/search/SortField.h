#pragma once

#include <array>
#include <cstdint>

#include "search/LabelledEnum.h"

namespace zelnor {

/// What results are sorted by. `relevance` leaves them as the index delivers them.
enum class SortField : std::uint8_t { relevance, name, path, size, date };

template <>
inline constexpr std::array kCases<SortField>{
    LabelledCase{SortField::relevance, "relevance", "匹配度"},
    LabelledCase{SortField::name, "name", "文件名"},
    LabelledCase{SortField::path, "path", "路径"},
    LabelledCase{SortField::size, "size", "大小"},
    LabelledCase{SortField::date, "date", "修改日期"},
};

}  // namespace zelnor
