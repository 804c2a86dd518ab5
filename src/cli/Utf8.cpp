#include "cli/Utf8.h"

#include <algorithm>
#include <array>

namespace zelnor::cli {

namespace {

/// One row of RFC 3629's grammar: which first bytes, which second bytes, and how many bytes in all.
struct Form {
  unsigned char firstLow;
  unsigned char firstHigh;
  unsigned char secondLow;
  unsigned char secondHigh;
  std::size_t length;
};

constexpr std::array<Form, 8> kForms{{{0xC2, 0xDF, 0x80, 0xBF, 2},
                                      {0xE0, 0xE0, 0xA0, 0xBF, 3},
                                      {0xE1, 0xEC, 0x80, 0xBF, 3},
                                      {0xED, 0xED, 0x80, 0x9F, 3},
                                      {0xEE, 0xEF, 0x80, 0xBF, 3},
                                      {0xF0, 0xF0, 0x90, 0xBF, 4},
                                      {0xF1, 0xF3, 0x80, 0xBF, 4},
                                      {0xF4, 0xF4, 0x80, 0x8F, 4}}};

bool isBetween(char byte, unsigned char low, unsigned char high) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= low && value <= high;
}

}  // namespace

std::size_t characterLength(std::string_view text) {
  if (text.empty()) return 0;
  if (isBetween(text[0], 0x00, 0x7F)) return 1;
  const auto* const form = std::ranges::find_if(kForms, [&](const Form& candidate) {
    return isBetween(text[0], candidate.firstLow, candidate.firstHigh);
  });
  if (form == kForms.end() || text.size() < form->length) return 0;
  const auto rest = text.substr(2, form->length - 2);
  const bool valid =
      isBetween(text[1], form->secondLow, form->secondHigh) &&
      std::ranges::all_of(rest, [](char byte) { return isBetween(byte, 0x80, 0xBF); });
  return valid ? form->length : 0;
}

}  // namespace zelnor::cli
