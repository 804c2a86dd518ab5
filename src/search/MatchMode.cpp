#include "search/MatchMode.h"

#include <algorithm>

namespace zelnor {

namespace {

/// What is searched for, without what says how.
std::string coreOf(std::string_view text) {
  if (text.starts_with("re:")) {
    text.remove_prefix(3);
  } else if (text.starts_with("r:")) {
    text.remove_prefix(2);
  }
  std::string core(text);
  std::erase_if(core, [](char c) { return c == '*' || c == '?'; });
  constexpr std::string_view kBlank = " \t";
  core.erase(0, std::min(core.find_first_not_of(kBlank), core.size()));
  core.erase(core.find_last_not_of(kBlank) + 1);
  return core;
}

}  // namespace

MatchMode currentMatchMode(std::string_view text) {
  if (text.starts_with("r:") || text.starts_with("re:")) return MatchMode::regex;
  if (text.find_first_of("*?") != std::string_view::npos) return MatchMode::wildcard;
  return MatchMode::contains;
}

std::string switchedMode(std::string_view text, MatchMode mode) {
  auto core = coreOf(text);
  switch (mode) {
    case MatchMode::wildcard:
      return core.empty() ? "*" : "*" + core + "*";
    case MatchMode::regex:
      return "r:" + core;
    case MatchMode::contains:
      break;
  }
  return core;
}

}  // namespace zelnor
