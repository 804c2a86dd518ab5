#include <array>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "platform/FileUris.h"

namespace zelnor::platform {
namespace {

TEST(FileUris, EveryByteOfAPathSurvives) {
  EXPECT_EQ(fileUri("/a/plain-name_1.~txt"), "file:///a/plain-name_1.~txt");
  EXPECT_EQ(fileUri("/100% #1?.txt"), "file:///100%25%20%231%3F.txt");
  EXPECT_EQ(fileUri("/new\r\nline"), "file:///new%0D%0Aline");
  EXPECT_EQ(fileUri("/\xE6\x8A\xA5/\xff"), "file:///%E6%8A%A5/%FF");
  EXPECT_EQ(fileUri("/<b>\"'"), "file:///%3Cb%3E%22'");
}

TEST(FileUris, AListHasALinePerFile) {
  const std::array<std::string, 2> paths{"/a b", "/c\n"};
  EXPECT_EQ(uriList(paths), "file:///a%20b\r\nfile:///c%0A\r\n");
  EXPECT_EQ(uriList({}), "");
}

TEST(FileUris, ARelativePathHasNone) {
  EXPECT_THROW(fileUri("a"), std::invalid_argument);
  EXPECT_THROW(fileUri(""), std::invalid_argument);
}

}  // namespace
}  // namespace zelnor::platform
