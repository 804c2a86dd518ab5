#include "search/RegularExpression.h"

#include <cstdint>
#include <utility>

#include <unicode/uregex.h>
#include <unicode/ustring.h>

namespace zelnor {

namespace {

/// In ICU's ticks of 10,000 saved states, of which a millisecond has three or so. No name of 255
/// bytes needs more than five for an expression whose work grows with the square of the length.
constexpr std::int32_t kTicksPerName = 32;

constexpr UChar32 kReplacementCharacter = 0xFFFD;

void convert(std::string_view utf8, std::u16string& text) {
  // No byte of UTF-8 becomes more than one unit of UTF-16.
  text.resize(utf8.size());
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(text.data(), static_cast<std::int32_t>(text.size()), &length, utf8.data(),
                       static_cast<std::int32_t>(utf8.size()), kReplacementCharacter, nullptr,
                       &status);
  text.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
}

}  // namespace

void RegularExpression::Close::operator()(URegularExpression* expression) const {
  uregex_close(expression);
}

std::optional<RegularExpression> RegularExpression::compile(std::string_view pattern) {
  std::u16string text;
  convert(pattern, text);
  UErrorCode status = U_ZERO_ERROR;
  Handle expression(uregex_open(text.data(), static_cast<std::int32_t>(text.size()),
                                UREGEX_CASE_INSENSITIVE, nullptr, &status));
  uregex_setTimeLimit(expression.get(), kTicksPerName, &status);
  if (U_FAILURE(status)) return std::nullopt;
  return RegularExpression(std::move(expression));
}

bool RegularExpression::isFoundIn(std::string_view name) {
  convert(name, name_);
  UErrorCode status = U_ZERO_ERROR;
  uregex_setText(expression_.get(), name_.data(), static_cast<std::int32_t>(name_.size()), &status);
  const bool found = uregex_find(expression_.get(), /*startIndex=*/0, &status) != 0;
  return found && U_SUCCESS(status) != 0;
}

}  // namespace zelnor
