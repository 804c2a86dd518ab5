#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/desktop/IconTheme.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::platform {
namespace {

using Names = std::vector<std::string>;

/// Two base folders with made-up themes.
class IconThemeTest : public testing::Test {
 protected:
  /// An index.theme with these folders, each "path Size Type and other keys".
  void theme(const std::string& name, const std::string& inherits,
             const std::vector<std::pair<std::string, std::string>>& folders) {
    std::string paths;
    std::string groups;
    for (const auto& [path, keys] : folders) {
      paths += path + ",";
      groups += "\n[" + path + "]\n" + keys + "\n";
    }
    base_.file("b/" + name + "/index.theme", "[Icon Theme]\nName=x\nInherits=" + inherits +
                                                 "\nDirectories=" + paths + "\n" + groups);
  }
  void icons(const Names& paths) {
    for (const auto& path : paths) base_.file(path);
  }
  /// The path below the base folders of what is found.
  std::string find(const Names& names, int pixels, const std::string& theme = "Made") {
    IconTheme icons(theme, {base_ / "a", base_ / "b"});
    const auto found = icons.find(names, pixels);
    return found ? found->substr(base_.path().size() + 1) : "(none)";
  }

  test::TemporaryFolder base_;
};

TEST_F(IconThemeTest, TheClosestSizeIsTaken) {
  theme("Made", "",
        {{"16", "Size=16\nType=Fixed"},
         {"32", "Size=32"},
         {"32@2", "Size=32\nScale=2"},
         {"any", "Size=48\nMinSize=40\nMaxSize=256\nType=Scalable"},
         {"odd", "Type=Fixed"}});
  icons({"b/Made/16/x.png", "b/Made/32/x.png", "b/Made/32@2/x.png", "b/Made/any/x.svg",
         "b/Made/16/only.png", "b/Made/odd/x.png", "b/Made/unlisted/y.png"});
  EXPECT_EQ(find({"x"}, 16), "b/Made/16/x.png");
  EXPECT_EQ(find({"x"}, 22), "b/Made/16/x.png");  // 6 away; 32 begins at 30
  EXPECT_EQ(find({"x"}, 30), "b/Made/32/x.png");
  EXPECT_EQ(find({"x"}, 34), "b/Made/32/x.png");
  EXPECT_EQ(find({"x"}, 64), "b/Made/32@2/x.png");
  EXPECT_EQ(find({"x"}, 128), "b/Made/any/x.svg");
  EXPECT_EQ(find({"only"}, 128), "b/Made/16/only.png");
  EXPECT_EQ(find({"y"}, 16), "(none)");
}

TEST_F(IconThemeTest, ANameInTheThemeGoesBeforeABetterOneInItsParents) {
  theme("Made", "Parent,Missing,Made", {{"16", "Size=16"}});
  theme("Parent", "Made,hicolor", {{"16", "Size=16"}});
  theme("hicolor", "", {{"16", "Size=16"}});
  icons({"b/Made/16/generic.png", "b/Parent/16/special.png", "b/Parent/16/parental.svg",
         "b/hicolor/16/parental.png", "b/hicolor/16/app.xpm", "b/loose.png", "a/loose.png"});
  EXPECT_EQ(find({"special", "generic"}, 16), "b/Made/16/generic.png");
  EXPECT_EQ(find({"parental"}, 16), "b/Parent/16/parental.svg");
  EXPECT_EQ(find({"missing", "app"}, 16), "b/hicolor/16/app.xpm");
  EXPECT_EQ(find({"loose"}, 16), "a/loose.png");
  EXPECT_EQ(find({"../16/generic", ""}, 16), "(none)");
  EXPECT_EQ(find({}, 16), "(none)");
}

TEST_F(IconThemeTest, AUserAddsToAThemeInAnotherBaseFolder) {
  theme("Made", "", {{"16", "Size=16"}});
  icons({"b/Made/16/x.png", "a/Made/16/x.png", "a/Made/16/added.png"});
  EXPECT_EQ(find({"x"}, 16), "a/Made/16/x.png");
  EXPECT_EQ(find({"added"}, 16), "a/Made/16/added.png");
}

TEST_F(IconThemeTest, WithoutAThemeTheUsualOnesAreTried) {
  const Names folders{base_ / "a", base_ / "b"};
  EXPECT_EQ(chooseIconTheme("Made", folders), "hicolor");
  theme("hicolor", "", {});
  theme("Papirus", "", {{"16", "Size=16"}});
  EXPECT_EQ(chooseIconTheme("hicolor", folders), "Papirus");
  theme("Made", "", {});
  EXPECT_EQ(chooseIconTheme("Made", folders), "Made");
  EXPECT_EQ(chooseIconTheme("../b/Made", folders), "Papirus");
  icons({"b/Papirus/16/x.png"});
  EXPECT_EQ(find({"x"}, 16, ""), "b/Papirus/16/x.png");
}

TEST_F(IconThemeTest, ADamagedThemeHasNothing) {
  base_.file("b/Made/index.theme", "no [group\n\xff");
  icons({"b/Made/16/x.png"});
  EXPECT_EQ(find({"x"}, 16), "(none)");
}

}  // namespace
}  // namespace zelnor::platform
