#include "platform/desktop/DesktopFileOpener.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/FileUris.h"
#include "platform/desktop/GLib.h"
#include "platform/desktop/LaunchContext.h"

namespace zelnor::platform {

namespace {

constexpr const char* kFileManager = "org.freedesktop.FileManager1";
constexpr int kAnswerMilliseconds = 3000;
/// A file manager that is not running yet is started by the bus.
constexpr int kStartMilliseconds = 10'000;

/// The session's bus; throws FileError if there is none. Each call of it says why it failed by
/// itself.
GObjectPointer<GDBusConnection> sessionBus() {
  GLibError error;
  GObjectPointer<GDBusConnection> bus(
      g_bus_get_sync(G_BUS_TYPE_SESSION, /*cancellable=*/nullptr, error.out()));
  if (!bus) throw error.toFileError();
  // The end of the session's bus is no reason to be killed by GIO.
  g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
  return bus;
}

struct BusCall {
  const char* service;
  const char* path;
  const char* method;
  int timeoutMilliseconds;
};

/// `arguments` is floating and taken over. The interfaces called here have the names of their
/// services.
void call(GDBusConnection* bus, const BusCall& what, GVariant* arguments) {
  GLibError error;
  const GLibPointer<GVariant> answer(g_dbus_connection_call_sync(
      bus, what.service, what.path, what.service, what.method, arguments, /*reply_type=*/nullptr,
      G_DBUS_CALL_FLAGS_NONE, what.timeoutMilliseconds, /*cancellable=*/nullptr, error.out()));
  if (!answer) throw error.toFileError();
}

void showItems(const std::string& uri, const Activation& activation) {
  const auto bus = sessionBus();
  // Started by a call of its own, because that may take longer than a running one is given.
  call(bus.get(),
       {.service = "org.freedesktop.DBus",
        .path = "/org/freedesktop/DBus",
        .method = "StartServiceByName",
        .timeoutMilliseconds = kStartMilliseconds},
       g_variant_new("(su)", kFileManager, /*flags*/ 0U));
  GVariantBuilder uris;
  g_variant_builder_init(&uris, G_VARIANT_TYPE_STRING_ARRAY);
  g_variant_builder_add(&uris, "s", uri.c_str());
  call(bus.get(),
       {.service = kFileManager,
        .path = "/org/freedesktop/FileManager1",
        .method = "ShowItems",
        .timeoutMilliseconds = kAnswerMilliseconds},
       g_variant_new("(ass)", &uris, activation.token.c_str()));
}

std::string parentOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

/// A descriptor that this process has of the file, if it has one.
std::optional<int> ownDescriptorOf(const std::string& path) {
  struct stat wanted{};
  if (::stat(path.c_str(), &wanted) != 0 || !S_ISREG(wanted.st_mode)) return std::nullopt;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    const auto number = entry.path().filename().string();
    int descriptor = -1;
    std::from_chars(number.data(), number.data() + number.size(), descriptor);
    struct stat status{};
    if (::fstat(descriptor, &status) == 0 && status.st_dev == wanted.st_dev &&
        status.st_ino == wanted.st_ino) {
      return descriptor;
    }
  }
  return std::nullopt;
}

/// The default application of an open file's type, by its name and what it begins with.
GObjectPointer<GAppInfo> programForOpen(int descriptor, const std::string& path) {
  constexpr std::size_t kEnough = 4096;
  std::array<unsigned char, kEnough> head{};
  const auto length = std::max<ssize_t>(::pread(descriptor, head.data(), head.size(), 0), 0);
  const GLibPointer<char> type(g_content_type_guess(path.substr(path.rfind('/') + 1).c_str(),
                                                    head.data(), static_cast<std::size_t>(length),
                                                    /*result_uncertain=*/nullptr));
  GObjectPointer<GAppInfo> program(
      g_app_info_get_default_for_type(type.get(), /*must_support_uris=*/FALSE));
  if (!program) {
    throw FileError(g_dgettext("glib20", "No application is registered as handling this file"));
  }
  return program;
}

/// GIO opens and closes the file to find out what it is, which drops every lock that this process
/// has on it, fcntl(2), such as SQLite's on the index.
GObjectPointer<GAppInfo> programFor(const std::string& path) {
  if (const auto descriptor = ownDescriptorOf(path)) return programForOpen(*descriptor, path);
  GLibError missing;
  GObjectPointer<GAppInfo> program(
      g_file_query_default_handler(fileAt(path).get(), /*cancellable=*/nullptr, missing.out()));
  if (!program) throw missing.toFileError();
  return program;
}

/// Whether the bus of the session can be had does not matter to most programs, but GIO takes the
/// shared connection for starting any.
void prepareBus() {
  try {
    sessionBus();
  } catch (const FileError&) {  // NOLINT(bugprone-empty-catch): then there is none to prepare
  }
}

}  // namespace

void DesktopFileOpener::open(const std::string& path, const Activation& activation) {
  prepareBus();
  const auto program = programFor(path);
  auto uri = fileUri(path);
  GList uris{.data = uri.data(), .next = nullptr, .prev = nullptr};
  GLibError failed;
  const auto context = launchContext(activation);
  if (g_app_info_launch_uris(program.get(), &uris, context.get(), failed.out()) == FALSE) {
    throw failed.toFileError();
  }
}

void DesktopFileOpener::reveal(const std::string& path, const Activation& activation) {
  try {
    showItems(fileUri(path), activation);
  } catch (const FileError&) {
    open(parentOf(path), activation);
  }
}

}  // namespace zelnor::platform
