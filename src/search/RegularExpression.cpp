#include "search/RegularExpression.h"

#include <cstdint>
#include <new>
#include <utility>

#include <unicode/uregex.h>
#include <unicode/ustring.h>

#include "search/RequiredLiteral.h"

namespace zelnor {

namespace {

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

/// Called by ICU whenever it has saved 10,000 more states to come back to.
UBool goOn(const void* context, std::int32_t ticks) {
  return static_cast<UBool>((*static_cast<const RegularExpression::Patience*>(context))(ticks));
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
  if (U_FAILURE(status)) return std::nullopt;
  return RegularExpression(std::move(expression), requiredLiteral(pattern));
}

RegularExpression RegularExpression::clone() const {
  UErrorCode status = U_ZERO_ERROR;
  Handle copy(uregex_clone(expression_.get(), &status));
  if (U_FAILURE(status)) throw std::bad_alloc();
  return {std::move(copy), literal_};
}

bool RegularExpression::mayBeFoundIn(std::string_view name) const {
  return mayHoldLiteral(name, literal_);
}

RegularExpression::Answer RegularExpression::lookIn(std::string_view name,
                                                    const Patience& patience) {
  convert(name, name_);
  UErrorCode status = U_ZERO_ERROR;
  uregex_setMatchCallback(expression_.get(), goOn, &patience, &status);
  uregex_setText(expression_.get(), name_.data(), static_cast<std::int32_t>(name_.size()), &status);
  const bool found = uregex_find(expression_.get(), /*startIndex=*/0, &status) != 0;
  if (U_FAILURE(status)) return Answer::givenUp;
  return found ? Answer::found : Answer::notFound;
}

}  // namespace zelnor
