#include "bench/QueryCases.h"

#include <utility>

namespace zelnor::bench {
namespace {

SearchQuery sorted(const std::string& text, SortField field, bool ascending) {
  return SearchQuery::parsed(text, SearchFilter{}, field, ascending);
}

SearchQuery filtered(const std::string& text, const SearchFilter& filter) {
  return SearchQuery::parsed(text, filter);
}

}  // namespace

std::vector<QueryCase> queryCases(const SampleTerms& terms,
                                  const std::function<bool(const std::string&)>& finds) {
  const auto choose = [&](const std::string& fixed, const std::string& otherwise) {
    return finds(fixed) ? fixed : otherwise;
  };
  const auto rare = choose("kubeconfig", terms.rare);
  const auto usual = choose("report", terms.common);
  const auto& common = terms.common;
  const auto twoLetters = choose("re", common.substr(0, 2));
  const auto cjk = choose("会议记录", terms.cjk);
  const auto shortCjk = choose("照片", terms.cjk.substr(0, 6));
  const auto extension = choose("*.pdf", "*." + terms.extension);

  return {
      {"rare", SearchQuery::parsed(rare)},
      {"usual", SearchQuery::parsed(usual)},
      {"common", SearchQuery::parsed(common)},
      {"nothing", SearchQuery::parsed("no such name anywhere")},
      {"two words", SearchQuery::parsed(usual + " " + common)},
      {"long and short word", SearchQuery::parsed(usual + " " + twoLetters)},
      {"two letters", SearchQuery::parsed(twoLetters)},
      {"CJK", SearchQuery::parsed(cjk)},
      {"CJK, two characters", SearchQuery::parsed(shortCjk)},
      {"wildcard: extension", SearchQuery::parsed(extension)},
      {"wildcard: inside", SearchQuery::parsed("*" + usual + "*2?*")},
      {"wildcard: beginning", SearchQuery::parsed(rare.substr(0, 4) + "*")},
      {"regular expression", SearchQuery::parsed("re:^" + usual + ".*[0-9]+")},
      {"regular expression: all", SearchQuery::parsed("re:.")},
      {"filter: documents", filtered(common, {.category = FileTypeCategory::document})},
      {"filter: folders", filtered(usual, {.category = FileTypeCategory::folder})},
      {"filter: size", filtered(common, {.sizePreset = SizePreset::medium})},
      {"filter: date", filtered(common, {.datePreset = DatePreset::year})},
      {"filter: all three", filtered(usual, {.category = FileTypeCategory::code,
                                             .sizePreset = SizePreset::tiny,
                                             .datePreset = DatePreset::year})},
      {"sorted by name", sorted(common, SortField::name, /*ascending=*/true)},
      {"sorted by path", sorted(usual, SortField::path, /*ascending=*/true)},
      {"sorted by size", sorted(common, SortField::size, /*ascending=*/false)},
      {"sorted by date", sorted(common, SortField::date, /*ascending=*/false)},
      {"two letters, sorted", sorted(twoLetters, SortField::date, /*ascending=*/false)},
  };
}

}  // namespace zelnor::bench
