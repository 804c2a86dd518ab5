#include "platform/UserFolders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace zelnor::platform {

namespace {

constexpr std::string_view kProgramFolder = "/Zelnor";

/// The value of an environment variable that names a folder; empty if it is unset or relative. The
/// The XDG base directory rules ask to ignore relative paths.
std::string absoluteFromEnvironment(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value == '/' ? value : std::string();
}

std::string homeFromUserDatabase() {
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 4096> texts{};
  ::getpwuid_r(::getuid(), &entry, texts.data(), texts.size(), &found);
  return found != nullptr && *entry.pw_dir != '\0' ? entry.pw_dir : "/";
}

std::string firstSet(std::string preferred, std::string otherwise) {
  return preferred.empty() ? std::move(otherwise) : std::move(preferred);
}

}  // namespace

UserFolders UserFolders::current() {
  auto home = absoluteFromEnvironment("HOME");
  if (home.empty()) home = homeFromUserDatabase();
  const auto data = firstSet(absoluteFromEnvironment("XDG_DATA_HOME"), home + "/.local/share");
  const auto config = firstSet(absoluteFromEnvironment("XDG_CONFIG_HOME"), home + "/.config");
  return {.home = home,
          .data = data + std::string(kProgramFolder),
          .config = config + std::string(kProgramFolder)};
}

std::string absolutePath(const std::string& path) {
  auto absolute = std::filesystem::absolute(path).lexically_normal();
  if (!absolute.has_filename() && absolute.has_relative_path()) absolute = absolute.parent_path();
  return absolute.string();
}

void createPrivateFolder(const std::string& folder) {
  namespace fs = std::filesystem;
  if (fs::is_directory(folder)) return;
  const auto parent = fs::path(folder).parent_path();
  if (!parent.empty() && parent != folder) createPrivateFolder(parent.string());
  if (::mkdir(folder.c_str(), S_IRWXU) == 0) return;
  // Another process may have been faster. A path that ends in '/' was made with its parent.
  const std::error_code error(errno, std::generic_category());
  if (error == std::errc::file_exists && fs::is_directory(folder)) return;
  throw fs::filesystem_error("cannot create folder", folder, error);
}

}  // namespace zelnor::platform
