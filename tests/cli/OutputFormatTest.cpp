#include <ctime>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cli/OutputFormat.h"
#include "cli/Progress.h"

namespace zelnor::cli {
namespace {

FileRecord record() {
  FileRecord record;
  record.name = "a\n\xE9";
  record.path = "/h/" + record.name;
  record.size = 1234;
  record.mtime = 86'400;
  record.kind = FileKind::directory;
  return record;
}

TEST(OutputFormat, KeepsTheBytesOfAPathExceptOnATerminal) {
  EXPECT_EQ(formatted(record(), OutputFormat::plain, /*forTerminal=*/false), "/h/a\n\xE9\n");
  EXPECT_EQ(formatted(record(), OutputFormat::plain, /*forTerminal=*/true), "/h/a\\n\\xe9\n");
  EXPECT_EQ(formatted(record(), OutputFormat::null, /*forTerminal=*/true),
            std::string("/h/a\n\xE9\0", 7));
}

TEST(OutputFormat, LongLinesHaveColumns) {
  const auto line = formatted(record(), OutputFormat::longLines, /*forTerminal=*/false);
  EXPECT_EQ(line, "d           1234  " + localTime(86'400) + "  /h/a\n\xE9\n");
  auto link = record();
  link.kind = FileKind::symlink;
  EXPECT_EQ(formatted(link, OutputFormat::longLines, /*forTerminal=*/false).front(), 'l');
}

TEST(OutputFormat, AnObjectOfJsonIsOneLine) {
  EXPECT_EQ(
      formatted(record(), OutputFormat::json, /*forTerminal=*/true),
      R"({"name":"a\n\udce9","path":"/h/a\n\udce9","size":1234,"mtime":86400,"kind":"directory"})"
      "\n");
}

TEST(OutputFormat, JsonStringsLeadBackToTheBytes) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"", R"("")"},
      {"\"\\/\t\x01\x7F", R"("\"\\/\t\u0001\u007f")"},
      {"报告 é 😀", "\"报告 é 😀\""},
      {"\x80\xFF", R"("\udc80\udcff")"},
      {"\xE6\x8A", R"("\udce6\udc8a")"},                      // cut off
      {"\xC0\xAF", R"("\udcc0\udcaf")"},                      // longer than need be
      {"\xED\xA0\x80", R"("\udced\udca0\udc80")"},            // a surrogate
      {"\xF4\x90\x80\x80", R"("\udcf4\udc90\udc80\udc80")"},  // above U+10FFFF
      {"\xE9t\xE9", R"("\udce9t\udce9")"},
      {"\xF0\x9F\x98x", R"("\udcf0\udc9f\udc98x")"},
  };
  for (const auto& [bytes, json] : cases) EXPECT_EQ(jsonString(bytes), json);
}

TEST(OutputFormat, NothingOfANameActsOnATerminal) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"plain name, 报告 é 😀 \\ \u00A0", "plain name, 报告 é 😀 \\ \u00A0"},
      {"\x1B[31m\r\n\t\x7F", "\\x1b[31m\\r\\n\\t\\x7f"},
      {"\u009B31m", "\\u009b31m"},
      {"gpj.\u202Eexe\u2066\u200F", "gpj.\\u202eexe\\u2066\\u200f"},
      {"\xFF", "\\xff"},
  };
  for (const auto& [name, shown] : cases) EXPECT_EQ(visible(name), shown);
}

TEST(OutputFormat, ATimeIsThatOfTheLocalClock) {
  std::tm parts{};
  parts.tm_year = 124;
  parts.tm_mon = 4;
  parts.tm_mday = 31;
  parts.tm_hour = 15;
  parts.tm_isdst = -1;
  EXPECT_EQ(localTime(std::mktime(&parts)), "2024-05-31 15:00:00");
  EXPECT_EQ(localTime(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
}

TEST(Progress, GroupsDigitsByThree) {
  const std::vector<std::pair<std::int64_t, std::string>> cases{
      {0, "0"}, {999, "999"}, {1000, "1,000"}, {1'125'085, "1,125,085"}, {-123'456, "-123,456"}};
  for (const auto& [number, text] : cases) EXPECT_EQ(grouped(number), text);
}

}  // namespace
}  // namespace zelnor::cli
