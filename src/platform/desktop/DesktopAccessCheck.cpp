#include "platform/desktop/DesktopAccessCheck.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/UserFolders.h"
#include "platform/desktop/GLib.h"

namespace zelnor::platform {

namespace {

namespace fs = std::filesystem;

/// A permission of Flatpak's, such as "host" or "host:ro"; "!host" takes it away.
bool givesHost(std::string_view permission) {
  return permission.substr(0, permission.find(':')) == "host";
}

bool isSetInEnvironment(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

}  // namespace

DesktopAccessCheck::Surroundings DesktopAccessCheck::Surroundings::current() {
  const char* const realHome = std::getenv("SNAP_REAL_HOME");
  return {.root = {},
          .home = realHome != nullptr ? realHome : UserFolders::current().home,
          .isInSnap = isSetInEnvironment("SNAP")};
}

DesktopAccessCheck::DesktopAccessCheck(Surroundings surroundings)
    : surroundings_(std::move(surroundings)) {}

bool DesktopAccessCheck::hasFullDiskAccess() const {
  if (isFlatpakWithoutHost()) return false;
  // A program may have been started from a Snap without being in one, so what counts is what can
  // be read. Other disks are mounted in either of two places, if in any.
  if (!surroundings_.isInSnap) return true;
  const auto canListIfThere = [this](const char* folder) {
    return isMissing(folder) || canList(folder);
  };
  return canList(surroundings_.home) && canListIfThere("/media") && canListIfThere("/run/media");
}

bool DesktopAccessCheck::isFlatpakWithoutHost() const {
  const auto path = surroundings_.root + "/.flatpak-info";
  std::error_code error;
  if (!fs::exists(path, error)) return false;
  const GLibPointer<GKeyFile> info(g_key_file_new());
  g_key_file_load_from_file(info.get(), path.c_str(), G_KEY_FILE_NONE, nullptr);
  gsize count = 0;
  char** const permissions =
      g_key_file_get_string_list(info.get(), "Context", "filesystems", &count, nullptr);
  const bool isHostThere = std::any_of(permissions, permissions + count, givesHost);
  g_strfreev(permissions);
  return !isHostThere;
}

bool DesktopAccessCheck::canList(const std::string& folder) const {
  std::error_code error;
  const fs::directory_iterator entries(surroundings_.root + folder, error);
  return !error;
}

bool DesktopAccessCheck::isMissing(const std::string& folder) const {
  std::error_code error;
  return fs::status(surroundings_.root + folder, error).type() == fs::file_type::not_found;
}

}  // namespace zelnor::platform
