#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "search/SearchFilter.h"
#include "search/SearchFilterJson.h"
#include "search/SortField.h"

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
  EXPECT_EQ(upperBound(SizePreset::small), 1'048'576);
  EXPECT_EQ(upperBound(SizePreset::medium), 10'485'760);
  EXPECT_EQ(upperBound(SizePreset::large), 104'857'600);
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

TEST(FileTypeCategory, HasExactlyTheseExtensions) {
  const std::vector<std::pair<FileTypeCategory, std::string>> sets{
      {FileTypeCategory::all, ""},
      {FileTypeCategory::document,
       "pdf doc docx xls xlsx ppt pptx txt rtf md pages numbers key odt ods odp csv epub mobi"},
      {FileTypeCategory::image,
       "jpg jpeg png gif bmp tiff tif webp heic heif raw cr2 nef arw svg ico psd ai"},
      {FileTypeCategory::video, "mp4 mov avi mkv wmv flv webm m4v 3gp ts mts m2ts vob rm rmvb"},
      {FileTypeCategory::audio, "mp3 aac wav flac ogg wma m4a aiff aif mid midi opus ape"},
      {FileTypeCategory::archive, "zip rar 7z tar gz bz2 xz dmg pkg iso tgz tar.gz tar.bz2"},
      {FileTypeCategory::code,
       "swift py js ts java c cpp h hpp go rs rb php html css json xml yaml yml sh bash zsh sql m "
       "kt dart"},
      {FileTypeCategory::executable, "app pkg dmg exe msi ipa"},
      {FileTypeCategory::folder, ""}};
  ASSERT_EQ(sets.size(), kCases<FileTypeCategory>.size());
  for (const auto& [category, words] : sets) {
    std::istringstream text(words);
    const std::multiset<std::string> expected(std::istream_iterator<std::string>(text), {});
    const auto set = extensions(category);
    EXPECT_EQ(std::multiset<std::string>(set.begin(), set.end()), expected) << rawValue(category);
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
  expectStoredFormsLeadBack<SortField>({"relevance", "name", "path", "size", "date"});
}

template <class Enum>
std::vector<std::string> labels() {
  std::vector<std::string> labels;
  for (const auto& one : kCases<Enum>) labels.emplace_back(label(one.value));
  return labels;
}

TEST(LabelledEnum, ShowsTheseTexts) {
  using Texts = std::vector<std::string>;
  EXPECT_EQ(labels<FileTypeCategory>(), (Texts{"全部", "文档", "图片", "视频", "音频", "压缩包",
                                               "代码", "应用/安装包", "文件夹"}));
  EXPECT_EQ(labels<SizePreset>(), (Texts{"不限大小", "100KB 以下", "100KB ~ 1MB", "1MB ~ 10MB",
                                         "10MB ~ 100MB", "100MB ~ 1GB", "1GB 以上"}));
  EXPECT_EQ(labels<DatePreset>(), (Texts{"不限时间", "今天", "近 7 天", "近 30 天", "近 3 个月",
                                         "近 1 年", "自定义..."}));
  EXPECT_EQ(labels<SortField>(), (Texts{"匹配度", "文件名", "路径", "大小", "修改日期"}));
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
