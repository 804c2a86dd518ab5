#include "tests/platform_desktop/PrivateHome.h"

#include <cstdlib>
#include <memory>

#include <gtest/gtest.h>

namespace zelnor::test {

namespace {

class Home final : public testing::Environment {
 public:
  static std::unique_ptr<TemporaryFolder>& folder() {
    static std::unique_ptr<TemporaryFolder> folder;
    return folder;
  }
  void SetUp() override {
    folder() = std::make_unique<TemporaryFolder>();
    const auto& home = folder()->path();
    setenv("HOME", home.c_str(), /*overwrite=*/1);
    setenv("XDG_DATA_HOME", (home + "/data").c_str(), /*overwrite=*/1);
    setenv("XDG_CONFIG_HOME", (home + "/config").c_str(), /*overwrite=*/1);
    setenv("XDG_CACHE_HOME", (home + "/cache").c_str(), /*overwrite=*/1);
    // Nobody's session is asked or changed.
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", /*overwrite=*/1);
    setenv("GIO_USE_VFS", "local", /*overwrite=*/1);
    setenv("GSETTINGS_BACKEND", "memory", /*overwrite=*/1);
  }
  void TearDown() override { folder().reset(); }
};

// NOLINTNEXTLINE(cppcoreguidelines-owning-memory): GoogleTest takes it over
const auto* const environment = testing::AddGlobalTestEnvironment(new Home);

}  // namespace

const TemporaryFolder& privateHome() { return *Home::folder(); }

}  // namespace zelnor::test
