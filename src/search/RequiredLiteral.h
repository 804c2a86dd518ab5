#pragma once

#include <string>
#include <string_view>

namespace zelnor {

/// ASCII text, in lower case, that every name of ASCII holds (in any case) in which `pattern` is
/// found: an expression in ICU's syntax that ignores letter case. Empty if none is known.
///
/// It is the longest run of characters outside all groups. A pattern that has alternatives there,
/// sets flags or contains anything else that is not plainly understood has none.
std::string requiredLiteral(std::string_view pattern);

/// Whether a pattern with this required literal may be found in `name`: the name holds the literal,
/// or bytes beyond ASCII, for ICU takes some characters for ASCII letters (the long s, the Kelvin
/// sign, ligatures).
bool mayHoldLiteral(std::string_view name, std::string_view literal);

}  // namespace zelnor
