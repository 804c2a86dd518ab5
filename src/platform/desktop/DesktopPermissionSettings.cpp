#include "platform/desktop/DesktopPermissionSettings.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <string_view>
#include <tuple>

#include "platform/desktop/GLib.h"

namespace zelnor::platform {

namespace {

/// The longest command, and the null that ends it.
using Command = std::array<const char*, 5>;

struct Page {
  std::string_view desktop;
  Command command;
};

/// From within a Flatpak the desktop's programs are reached through flatpak-spawn, if at all.
constexpr std::array<Page, 5> kPages{{
    {.desktop = "GNOME", .command = {"gnome-control-center", "applications"}},
    {.desktop = "GNOME",
     .command = {"flatpak-spawn", "--host", "gnome-control-center", "applications"}},
    {.desktop = "KDE", .command = {"systemsettings", "kcm_flatpak"}},
    {.desktop = "KDE", .command = {"systemsettings5", "kcm_flatpak"}},
    {.desktop = "KDE", .command = {"flatpak-spawn", "--host", "systemsettings", "kcm_flatpak"}},
}};

bool isRunning(std::string_view desktop) {
  const char* const current = std::getenv("XDG_CURRENT_DESKTOP");
  const auto list = ':' + std::string(current != nullptr ? current : "") + ':';
  return list.find(':' + std::string(desktop) + ':') != std::string::npos;
}

bool start(const Command& command, const Activation& activation) {
  auto arguments = std::array<char*, std::tuple_size_v<Command>>{};
  std::ranges::transform(command, arguments.begin(),
                         [](const char* word) { return const_cast<char*>(word); });
  char** environment = g_get_environ();
  for (const auto* variable : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"}) {
    environment = activation.token.empty()
                      ? g_environ_unsetenv(environment, variable)
                      : g_environ_setenv(environment, variable, activation.token.c_str(),
                                         /*overwrite=*/TRUE);
  }
  const bool isStarted =
      g_spawn_async(/*working_directory=*/nullptr, arguments.data(), environment,
                    G_SPAWN_SEARCH_PATH, /*child_setup=*/nullptr, /*user_data=*/nullptr,
                    /*child_pid=*/nullptr, /*error=*/nullptr) != FALSE;
  g_strfreev(environment);
  return isStarted;
}

}  // namespace

bool DesktopPermissionSettings::open(const Activation& activation) {
  return std::ranges::any_of(kPages, [&activation](const Page& page) {
    return isRunning(page.desktop) && start(page.command, activation);
  });
}

}  // namespace zelnor::platform
