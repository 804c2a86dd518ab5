#include <algorithm>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/Options.h"
#include "platform/UserFolders.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::app {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using Words = std::vector<std::string>;

std::variant<Options, int> parse(Words words) {
  std::vector<const char*> arguments{"zelnor"};
  for (const auto& word : words) arguments.push_back(word.c_str());
  return Options::parse(static_cast<int>(arguments.size()), arguments.data());
}

/// In a folder of the test's own, where relative paths lead.
class OptionsTest : public testing::Test {
 protected:
  void SetUp() override { std::filesystem::current_path(folder_.path()); }
  void TearDown() override { std::filesystem::current_path(before_); }

  const test::TemporaryFolder folder_;

 private:
  const std::filesystem::path before_ = std::filesystem::current_path();
};

TEST_F(OptionsTest, TakeTheUsersFoldersUnlessTold) {
  const auto folders = platform::UserFolders::current();
  const auto usual = std::get<Options>(parse({}));
  EXPECT_EQ(usual.homeFolder, folders.home);
  EXPECT_EQ(usual.dataFolder, folders.data);
  EXPECT_EQ(usual.settingsFolder, folders.config);
  EXPECT_THAT(usual.roots, IsEmpty());
  EXPECT_FALSE(usual.isApart || usual.isInBackground);
  EXPECT_THAT(usual.action, IsEmpty());

  const auto apart = std::get<Options>(parse({"--index", "not/../there/"}));
  EXPECT_EQ(apart.homeFolder, folders.home);
  EXPECT_EQ(apart.dataFolder, folder_ / "there");
  EXPECT_EQ(apart.settingsFolder, folder_ / "there");
  EXPECT_TRUE(apart.isApart);

  EXPECT_TRUE(std::get<Options>(parse({"--background"})).isInBackground);
  EXPECT_EQ(std::get<Options>(parse({"--preferences"})).action, "preferences");
  EXPECT_EQ(std::get<Options>(parse({"--quit"})).action, "quit");
}

TEST_F(OptionsTest, IndexEveryFolderThatIsNamedWhateverItIsCalled) {
  for (const auto* name : {"a/b", "[c,d]", "-e", "--root", "f\xff", "--"}) folder_.folder(name);
  const std::vector<std::pair<Words, Words>> cases{
      {{"a"}, {"a"}},
      {{"a/b/", "./a/../[c,d]"}, {"a/b", "[c,d]"}},
      {{"--root", "a", "--root=[c,d]", "f\xff"}, {"a", "[c,d]", "f\xff"}},
      {{"--root=-e", "--index", "i", "a"}, {"-e", "a"}},
      {{"a", "--", "-e", "--root", "--", "a"}, {"a", "-e", "--root", "--", "a"}},
      {{folder_ / "a"}, {"a"}},
  };
  for (const auto& [words, names] : cases) {
    auto expected = names;
    for (auto& name : expected) name = folder_ / name;
    EXPECT_EQ(std::get<Options>(parse(words)).roots, expected) << testing::PrintToString(words);
  }
  EXPECT_EQ(std::get<Options>(parse({"/"})).roots, Words{"/"});
}

TEST_F(OptionsTest, AMistakeIsOneLineAndStatusTwo) {
  folder_.file("file");
  const std::vector<std::pair<Words, std::string>> cases{
      {{"missing"}, "'missing'"},
      {{"--root", "missing"}, "'missing'"},
      {{"file"}, "'file'"},
      {{""}, "''"},
      {{"-x"}, "-x"},
      {{"--bogus", "--", "."}, "--bogus"},
      {{"--root"}, "--root"},
      {{"--", "-x"}, "'-x'"},
  };
  for (const auto& [words, part] : cases) {
    testing::internal::CaptureStderr();
    const auto outcome = parse(words);
    const auto message = testing::internal::GetCapturedStderr();
    ASSERT_TRUE(std::holds_alternative<int>(outcome)) << testing::PrintToString(words);
    EXPECT_EQ(std::get<int>(outcome), 2);
    EXPECT_THAT(message, testing::AllOf(testing::StartsWith("zelnor: "), HasSubstr(part)));
    EXPECT_EQ(std::ranges::count(message, '\n'), 1) << message;
  }
}

TEST_F(OptionsTest, HelpIsNoMistake) {
  testing::internal::CaptureStdout();
  const auto outcome = parse({"--help"});
  const auto help = testing::internal::GetCapturedStdout();
  EXPECT_EQ(std::get<int>(outcome), 0);
  for (const auto* part : {"[DIR...]", "--index DIR", "--root DIR"}) {
    EXPECT_THAT(help, HasSubstr(part));
  }
}

}  // namespace
}  // namespace zelnor::app
