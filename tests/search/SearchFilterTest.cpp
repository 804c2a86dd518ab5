#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "search/SearchFilter.h"
#include "search/SearchFilterJson.h"

namespace zelnor {
namespace {

using Json = nlohmann::ordered_json;

SearchFilter fullFilter() {
  return {.category = FileTypeCategory::image,
          .sizePreset = SizePreset::enormous,
          .datePreset = DatePreset::threeMonths,
          .customMinSize = 1,
          .customMaxSize = std::numeric_limits<std::int64_t>::max(),
          .customFromDate = Date{725'760'000},
          .customToDate = Date{725'760'000.123456789}};
}

TEST(SearchFilter, IsActiveWhenAnyFieldDiffersFromEmpty) {
  EXPECT_FALSE(SearchFilter::empty.isActive());
  const std::vector<SearchFilter> active{
      {.category = FileTypeCategory::folder},
      {.sizePreset = SizePreset::tiny},
      {.datePreset = DatePreset::custom},
      {.customMinSize = 0},
      {.customMaxSize = 0},
      {.customFromDate = Date{}},
      {.customToDate = Date{}},
  };
  for (const auto& filter : active) {
    EXPECT_TRUE(filter.isActive());
    EXPECT_NE(std::hash<SearchFilter>{}(filter), std::hash<SearchFilter>{}(SearchFilter::empty));
  }
}

TEST(SearchFilter, CustomBoundsReplaceThePresetsOnTheirSideOnly) {
  SearchFilter filter{.sizePreset = SizePreset::medium, .customMaxSize = 5'000'000};
  EXPECT_EQ(filter.minSize(), 1'048'576);
  EXPECT_EQ(filter.maxSize(), 5'000'000);
  filter = {.datePreset = DatePreset::today, .customFromDate = Date{42}};
  EXPECT_EQ(filter.fromDate(Date{1e9}), Date{42});
  EXPECT_EQ(filter.toDate(), std::nullopt);
}

TEST(SizePreset, NeighboursShareTheirBoundary) {
  const auto& presets = kCases<SizePreset>;
  for (std::size_t i = 2; i < presets.size(); ++i) {
    EXPECT_TRUE(lowerBound(presets[i].value));
    EXPECT_EQ(lowerBound(presets[i].value), upperBound(presets[i - 1].value));
  }
  EXPECT_EQ(upperBound(SizePreset::tiny), 102'400);
  EXPECT_EQ(upperBound(SizePreset::huge), 1'073'741'824);
  EXPECT_EQ(upperBound(SizePreset::any), std::nullopt);
  EXPECT_EQ(lowerBound(SizePreset::tiny), std::nullopt);
  EXPECT_EQ(upperBound(SizePreset::enormous), std::nullopt);
}

TEST(FileTypeCategory, ExtensionsGoToTheFirstCategoryThatHasThem) {
  const std::vector<std::pair<std::string, FileTypeCategory>> cases{
      {"JPG", FileTypeCategory::image},      {"jpg", FileTypeCategory::image},
      {"ts", FileTypeCategory::video},       {"dmg", FileTypeCategory::archive},
      {"swift", FileTypeCategory::code},     {"exe", FileTypeCategory::executable},
      {"tar.gz", FileTypeCategory::archive}, {"opus", FileTypeCategory::audio},
      {"xyz", FileTypeCategory::document},   {"", FileTypeCategory::document},
  };
  for (const auto& [extension, category] : cases) {
    EXPECT_EQ(categoryForExtension(extension), category) << extension;
  }
}

TEST(FileTypeCategory, EveryExtensionSetIsCompleteAndWithoutRepetition) {
  const std::vector<std::pair<FileTypeCategory, std::size_t>> counts{
      {FileTypeCategory::all, 0},    {FileTypeCategory::document, 19},
      {FileTypeCategory::image, 18}, {FileTypeCategory::video, 15},
      {FileTypeCategory::audio, 13}, {FileTypeCategory::archive, 13},
      {FileTypeCategory::code, 26},  {FileTypeCategory::executable, 6},
      {FileTypeCategory::folder, 0}};
  for (const auto& [category, count] : counts) {
    const auto set = extensions(category);
    EXPECT_EQ(std::set(set.begin(), set.end()).size(), count) << rawValue(category);
    EXPECT_EQ(set.size(), count) << rawValue(category);
  }
}

template <class Enum>
void expectStoredFormsLeadBack(const std::vector<std::string>& rawValues) {
  ASSERT_EQ(kCases<Enum>.size(), rawValues.size());
  for (std::size_t i = 0; i < rawValues.size(); ++i) {
    const auto value = static_cast<Enum>(i);
    EXPECT_EQ(rawValue(value), rawValues[i]);
    EXPECT_EQ(fromRawValue<Enum>(rawValues[i]), value);
    EXPECT_EQ(kCases<Enum>[i].value, value);
  }
  EXPECT_EQ(fromRawValue<Enum>("nonsense"), std::nullopt);
  EXPECT_EQ(fromRawValue<Enum>(""), std::nullopt);
}

TEST(LabelledEnum, StoredFormsLeadBackToTheirCases) {
  expectStoredFormsLeadBack<FileTypeCategory>(
      {"all", "document", "image", "video", "audio", "archive", "code", "executable", "folder"});
  expectStoredFormsLeadBack<SizePreset>(
      {"any", "tiny", "small", "medium", "large", "huge", "enormous"});
  expectStoredFormsLeadBack<DatePreset>(
      {"any", "today", "week", "month", "three_months", "year", "custom"});
}

TEST(SearchFilterJson, WritesKeysInOrderAndAbsentFieldsNotAtAll) {
  EXPECT_EQ(Json(SearchFilter::empty).dump(),
            R"({"category":"all","sizePreset":"any","datePreset":"any"})");
  EXPECT_EQ(
      Json(fullFilter()).dump(),
      R"({"category":"image","sizePreset":"enormous","datePreset":"three_months","customMinSize":1,)"
      R"("customMaxSize":9223372036854775807,"customFromDate":725760000,"customToDate":725760000.1234568})");
}

TEST(SearchFilterJson, ReadsWhatItWroteUnchanged) {
  for (const auto& filter : {SearchFilter::empty, fullFilter()}) {
    EXPECT_EQ(Json::parse(Json(filter).dump()).get<SearchFilter>(), filter);
  }
}

TEST(SearchFilterJson, AcceptsAnyKeyOrderAndUnknownKeys) {
  const auto json = Json::parse(
      R"({"new":[1],"datePreset":"three_months","customMinSize":null,"sizePreset":"any","category":"code"})");
  EXPECT_EQ(json.get<SearchFilter>(), (SearchFilter{.category = FileTypeCategory::code,
                                                    .datePreset = DatePreset::threeMonths}));
}

TEST(SearchFilterJson, RejectsMissingKeysUnknownValuesAndWrongTypes) {
  const std::vector<std::string> broken{
      R"({"category":"all","sizePreset":"any"})",
      R"({"category":"All","sizePreset":"any","datePreset":"any"})",
      R"({"category":"all","sizePreset":"any","datePreset":"threeMonths"})",
      R"({"category":1,"sizePreset":"any","datePreset":"any"})",
      R"({"category":"all","sizePreset":"any","datePreset":"any","customMinSize":true})",
      R"({"category":"all","sizePreset":"any","datePreset":"any","customMinSize":1.5})",
      R"({"category":"all","sizePreset":"any","datePreset":"any","customMinSize":9223372036854775808})",
      R"({"category":"all","sizePreset":"any","datePreset":"any","customToDate":"2024-01-01"})",
      R"({"category":"all","sizePreset":"any","datePreset":"any","customToDate":false})",
      R"([])",
      R"(null)",
  };
  for (const auto& text : broken) {
    EXPECT_THROW(std::ignore = Json::parse(text).get<SearchFilter>(), std::exception) << text;
  }
}

}  // namespace
}  // namespace zelnor
