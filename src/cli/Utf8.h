#pragma once

#include <cstddef>
#include <string_view>

namespace zelnor::cli {

/// The length of the character at the beginning of `text`, or 0 if its first byte belongs to none
/// (RFC 3629: no surrogates, nothing longer than need be, nothing above U+10FFFF).
std::size_t characterLength(std::string_view text);

}  // namespace zelnor::cli
