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
      {.name = "rare", .query = SearchQuery::parsed(rare)},
      {.name = "usual", .query = SearchQuery::parsed(usual)},
      {.name = "common", .query = SearchQuery::parsed(common)},
      {.name = "nothing", .query = SearchQuery::parsed("no such name anywhere")},
      {.name = "two words", .query = SearchQuery::parsed(usual + " " + extension.substr(2))},
      {.name = "long and short word", .query = SearchQuery::parsed(usual + " " + twoLetters)},
      {.name = "two letters", .query = SearchQuery::parsed(twoLetters)},
      {.name = "CJK", .query = SearchQuery::parsed(cjk)},
      {.name = "CJK, two characters", .query = SearchQuery::parsed(shortCjk)},
      {.name = "wildcard: extension", .query = SearchQuery::parsed(extension)},
      {.name = "wildcard: inside", .query = SearchQuery::parsed("*" + usual + "*2?*")},
      {.name = "wildcard: beginning", .query = SearchQuery::parsed(rare.substr(0, 4) + "*")},
      {.name = "regular expression", .query = SearchQuery::parsed("re:^" + usual + ".*[0-9]+")},
      {.name = "regular expression: all", .query = SearchQuery::parsed("re:.")},
      {.name = "filter: documents",
       .query = filtered(usual, {.category = FileTypeCategory::document})},
      {.name = "filter: folders", .query = filtered(usual, {.category = FileTypeCategory::folder})},
      {.name = "filter: size", .query = filtered(common, {.sizePreset = SizePreset::medium})},
      {.name = "filter: date", .query = filtered(common, {.datePreset = DatePreset::year})},
      {.name = "filter: all three",
       .query = filtered(usual, {.category = FileTypeCategory::code,
                                 .sizePreset = SizePreset::tiny,
                                 .datePreset = DatePreset::year})},
      {.name = "sorted by name", .query = sorted(common, SortField::name, /*ascending=*/true)},
      {.name = "sorted by path", .query = sorted(usual, SortField::path, /*ascending=*/true)},
      {.name = "sorted by size", .query = sorted(common, SortField::size, /*ascending=*/false)},
      {.name = "sorted by date", .query = sorted(common, SortField::date, /*ascending=*/false)},
      {.name = "two letters, sorted",
       .query = sorted(twoLetters, SortField::date, /*ascending=*/false)},
  };
}

}  // namespace zelnor::bench
