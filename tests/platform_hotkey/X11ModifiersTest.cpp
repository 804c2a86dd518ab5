#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/xproto.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include "platform/desktop/hotkey/X11Modifiers.h"

namespace zelnor::platform {
namespace {

constexpr HotkeyConfiguration kCommandOption{
    .keyCode = 0, .modifiers = HotkeyConfiguration::kCommand | HotkeyConfiguration::kOption};

TEST(X11Modifiers, AreFoundByTheirKeysWhereverTheyAre) {
  const std::vector<ModifierKey> keys{
      {XCB_MOD_MASK_LOCK, XKB_KEY_Caps_Lock}, {XCB_MOD_MASK_1, XKB_KEY_Meta_L},
      {XCB_MOD_MASK_2, XKB_KEY_Scroll_Lock},  {XCB_MOD_MASK_3, XKB_KEY_Super_R},
      {XCB_MOD_MASK_4, XKB_KEY_Alt_R},        {XCB_MOD_MASK_5, XKB_KEY_Num_Lock}};
  const auto modifiers = X11Modifiers::from(keys);
  EXPECT_EQ(modifiers.option, XCB_MOD_MASK_4);
  EXPECT_EQ(modifiers.command, XCB_MOD_MASK_3);
  EXPECT_EQ(modifiers.locks, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2 | XCB_MOD_MASK_5);
  EXPECT_EQ(modifiers.masks(kCommandOption).size(), 8U);
}

TEST(X11Modifiers, OneThatIsHeldIsNoLock) {
  const std::vector<ModifierKey> keys{{XCB_MOD_MASK_2, XKB_KEY_Num_Lock},
                                      {XCB_MOD_MASK_2, XKB_KEY_Super_L}};
  const auto masks = X11Modifiers::from(keys).masks(kCommandOption);
  EXPECT_THAT(masks,
              testing::UnorderedElementsAre(XCB_MOD_MASK_1 | XCB_MOD_MASK_2,
                                            XCB_MOD_MASK_1 | XCB_MOD_MASK_2 | XCB_MOD_MASK_LOCK));
}

TEST(X11Modifiers, WithoutKeysTheUsualOnesAreTaken) {
  EXPECT_THAT(X11Modifiers::from({}).masks(kCommandOption),
              testing::UnorderedElementsAre(XCB_MOD_MASK_1 | XCB_MOD_MASK_4,
                                            XCB_MOD_MASK_1 | XCB_MOD_MASK_4 | XCB_MOD_MASK_LOCK));
  EXPECT_TRUE(X11Modifiers().masks({.keyCode = 49, .modifiers = 0}).empty());
}

}  // namespace
}  // namespace zelnor::platform
