#include "platform/desktop/DesktopLoginItem.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/AtomicFile.h"
#include "platform/UserFolders.h"
#include "platform/desktop/AutostartEntry.h"

namespace zelnor::platform {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFolderName = "/autostart";
constexpr std::string_view kEntryName = "/zelnor.desktop";
/// Under this name the program is installed.
constexpr const char* kProgramName = "zelnor";

/// The absolute paths in a list of folders, separated by ':'.
std::vector<std::string> foldersOf(const char* variable, std::string_view otherwise) {
  const char* const value = std::getenv(variable);
  std::string_view rest = value != nullptr && *value != '\0' ? value : otherwise;
  std::vector<std::string> folders;
  while (!rest.empty()) {
    const auto folder = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
    if (folder.starts_with('/')) folders.emplace_back(folder);
  }
  return folders;
}

bool isExecutable(const std::string& path) {
  std::error_code error;
  return fs::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
}

/// Where to write, so that a link to a file elsewhere stays one. A link to something else, such as
/// /dev/null, is a way to switch an entry off, and is replaced.
std::string targetOf(const std::string& path) {
  std::error_code error;
  if (!fs::is_symlink(path, error) || !fs::is_regular_file(path, error)) return path;
  auto target = fs::canonical(path, error);
  return error ? path : target.string();
}

}  // namespace

DesktopLoginItem::Places DesktopLoginItem::Places::current() {
  Places places;
  const auto ours = UserFolders::current().config;
  places.userFolder = fs::path(ours).parent_path().string() + std::string(kFolderName);
  for (const auto& folder : foldersOf("XDG_CONFIG_DIRS", "/etc/xdg"))
    places.systemFolders.push_back(folder + std::string(kFolderName));
  places.searchPath = foldersOf("PATH", "/usr/local/bin:/usr/bin:/bin");
  std::error_code error;
  places.program = fs::read_symlink("/proc/self/exe", error).string();
  return places;
}

DesktopLoginItem::DesktopLoginItem(Places places) : places_(std::move(places)) {}

std::string DesktopLoginItem::userFile() const {
  return places_.userFolder + std::string(kEntryName);
}

/// The one that counts, or an empty path.
std::string DesktopLoginItem::systemFile() const {
  for (const auto& folder : places_.systemFolders) {
    std::error_code error;
    const auto path = folder + std::string(kEntryName);
    if (fs::exists(path, error)) return path;
  }
  return {};
}

bool DesktopLoginItem::isRunnable(const std::string& program) const {
  if (program.find('/') != std::string::npos) return isExecutable(program);
  return std::ranges::any_of(places_.searchPath, [&program](const std::string& folder) {
    return isExecutable(folder + '/' + program);
  });
}

/// Whether the name alone leads to this very program.
bool DesktopLoginItem::isOnSearchPath() const {
  for (const auto& folder : places_.searchPath) {
    const auto candidate = folder + '/' + kProgramName;
    std::error_code error;
    if (isExecutable(candidate)) return fs::equivalent(candidate, places_.program, error);
  }
  return false;
}

LoginItem::Status DesktopLoginItem::status() const {
  std::optional<AutostartEntry> entry;
  try {
    entry = AutostartEntry::read(userFile());
    if (!entry) {
      if (const auto path = systemFile(); !path.empty()) entry = AutostartEntry::read(path);
    }
  } catch (const std::system_error&) {
    return Status::notFound;  // what we cannot read no desktop can
  }
  if (!entry || !entry->isOn()) return Status::notRegistered;
  const auto needed = entry->tryExec();
  return needed.empty() || isRunnable(needed) ? Status::enabled : Status::notFound;
}

void DesktopLoginItem::registerItem() {
  if (status() == Status::enabled) return;
  const auto path = userFile();
  auto entry = AutostartEntry::read(path).value_or(AutostartEntry());
  entry.setProgram(isOnSearchPath() ? kProgramName : places_.program);
  entry.switchOn();
  createPrivateFolder(places_.userFolder);
  replaceFile(targetOf(path), entry.text());
}

void DesktopLoginItem::unregisterItem() {
  const auto path = userFile();
  auto entry = AutostartEntry::read(path);
  if (!entry) {
    const auto system = systemFile();
    if (system.empty()) return;
    // Only an entry of the same name in the user's folder can take the system's away.
    entry = AutostartEntry::read(system);
  }
  if (!entry || !entry->isOn()) return;
  entry->switchOff();
  createPrivateFolder(places_.userFolder);
  replaceFile(targetOf(path), entry->text());
}

}  // namespace zelnor::platform
