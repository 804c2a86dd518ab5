#include "bench/SampleTerms.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <map>
#include <string_view>

namespace zelnor::bench {
namespace {

using Frequencies = std::map<std::string, int>;

/// Lead bytes of UTF-8 sequences of U+2E80 to U+FFFF, near enough; three bytes each.
bool isCjkLead(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0xE2U && byte <= 0xEFU;
}
bool isLetter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
bool isLetterOrDigit(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; }
bool isPartOfCjk(char c) {
  return isCjkLead(c) || (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

std::string lower(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return result;
}

/// Calls `visit` with each longest run of characters that belong.
template <class Belongs, class Visit>
void visitRuns(std::string_view text, const Belongs& belongs, const Visit& visit) {
  auto begin = std::find_if(text.begin(), text.end(), belongs);
  while (begin != text.end()) {
    const auto end = std::find_if_not(begin, text.end(), belongs);
    visit(std::string_view(begin, end));
    begin = std::find_if(end, text.end(), belongs);
  }
}

std::string mostFrequent(const Frequencies& frequencies) {
  const auto found = std::ranges::max_element(
      frequencies, [](const auto& a, const auto& b) { return a.second < b.second; });
  return found == frequencies.end() ? std::string() : found->first;
}

std::string longestSingle(const Frequencies& frequencies) {
  std::string longest;
  for (const auto& [term, count] : frequencies) {
    if (count == 1 && term.size() > longest.size()) longest = term;
  }
  return longest;
}

}  // namespace

SampleTerms SampleTerms::of(std::span<const std::string> names) {
  constexpr std::size_t kShortestCommon = 3;
  constexpr std::size_t kLongestRare = 10;
  constexpr std::size_t kThreeCjkCharacters = 9;
  Frequencies words;
  Frequencies tokens;
  Frequencies cjk;
  Frequencies extensions;
  for (const auto& name : names) {
    visitRuns(name, isLetter, [&](std::string_view run) {
      if (run.size() >= kShortestCommon) ++words[lower(run)];
    });
    visitRuns(name, isLetterOrDigit,
              [&](std::string_view run) { ++tokens[lower(run.substr(0, kLongestRare))]; });
    visitRuns(name, isPartOfCjk, [&](std::string_view run) {
      if (isCjkLead(run.front())) ++cjk[std::string(run.substr(0, kThreeCjkCharacters))];
    });
    const auto dot = name.rfind('.');
    if (dot != std::string::npos && dot > 0)
      ++extensions[lower(std::string_view(name).substr(dot + 1))];
  }
  return {.common = mostFrequent(words),
          .rare = longestSingle(tokens),
          .cjk = mostFrequent(cjk),
          .extension = mostFrequent(extensions)};
}

}  // namespace zelnor::bench
