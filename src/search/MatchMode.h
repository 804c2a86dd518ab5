#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "search/LabelledEnum.h"

namespace zelnor {

/// How a query's text is read. Pure functions over the text, which is UTF-8.
enum class MatchMode : std::uint8_t { contains, wildcard, regex };

template <>
inline constexpr std::array kCases<MatchMode>{
    LabelledCase{MatchMode::contains, "contains", "包含（默认）"},
    LabelledCase{MatchMode::wildcard, "wildcard", "通配符 (* ?)"},
    LabelledCase{MatchMode::regex, "regex", "正则表达式"},
};

/// How `text` is read as it stands.
MatchMode currentMatchMode(std::string_view text);

/// `text` rewritten so that it is read as `mode`. Wildcards in it are lost.
std::string switchedMode(std::string_view text, MatchMode mode);

}  // namespace zelnor
