#include "platform/desktop/AutostartEntry.h"

#include <cstdlib>
#include <string_view>

#include "platform/AtomicFile.h"

namespace zelnor::platform {

namespace {

constexpr const char* kGroup = G_KEY_FILE_DESKTOP_GROUP;
constexpr const char* kHidden = G_KEY_FILE_DESKTOP_KEY_HIDDEN;
/// Desktops that came from GNOME switch entries by this.
constexpr const char* kGnomeEnabled = "X-GNOME-Autostart-enabled";

/// Whether this desktop is in the key's list; nothing if there is no such key.
std::optional<bool> namesThisDesktop(GKeyFile* file, const char* key) {
  char** const list = g_key_file_get_string_list(file, kGroup, key, /*length=*/nullptr, nullptr);
  if (list == nullptr) return std::nullopt;
  const char* const current = std::getenv("XDG_CURRENT_DESKTOP");
  char** const desktops = g_strsplit(current != nullptr ? current : "", ":", /*max_tokens=*/0);
  bool isNamed = false;
  for (char** desktop = desktops; *desktop != nullptr; ++desktop)
    isNamed = isNamed || g_strv_contains(list, *desktop) != FALSE;
  g_strfreev(desktops);
  g_strfreev(list);
  return isNamed;
}

}  // namespace

AutostartEntry::AutostartEntry() : file_(g_key_file_new()) {}

std::optional<AutostartEntry> AutostartEntry::read(const std::string& path) {
  const auto content = readFile(path);
  if (!content) return std::nullopt;
  AutostartEntry entry;
  // NOLINTBEGIN(clang-analyzer-optin.core.EnumCastOutOfRange): bits
  constexpr auto kEverything =
      static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
  // NOLINTEND(clang-analyzer-optin.core.EnumCastOutOfRange)
  GLibError damaged;
  g_key_file_load_from_data(entry.file_.get(), content->data(), content->size(), kEverything,
                            damaged.out());
  if (damaged) return AutostartEntry();
  return entry;
}

bool AutostartEntry::isSet(const char* key, bool otherwise) const {
  GLibError missing;
  const bool value = g_key_file_get_boolean(file_.get(), kGroup, key, missing.out()) != FALSE;
  return missing ? otherwise : value;
}

void AutostartEntry::set(const char* key, const char* value) {
  g_key_file_set_string(file_.get(), kGroup, key, value);
}

bool AutostartEntry::isOn() const {
  const auto hasExec =
      g_key_file_has_key(file_.get(), kGroup, G_KEY_FILE_DESKTOP_KEY_EXEC, nullptr) != FALSE;
  const bool isForThisDesktop =
      namesThisDesktop(file_.get(), G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN).value_or(true) &&
      !namesThisDesktop(file_.get(), G_KEY_FILE_DESKTOP_KEY_NOT_SHOW_IN).value_or(false);
  return hasExec && isForThisDesktop && !isSet(kHidden, /*otherwise=*/false) &&
         isSet(kGnomeEnabled, /*otherwise=*/true);
}

std::string AutostartEntry::tryExec() const {
  const GLibPointer<char> value(
      g_key_file_get_string(file_.get(), kGroup, G_KEY_FILE_DESKTOP_KEY_TRY_EXEC, nullptr));
  return value ? value.get() : std::string();
}

void AutostartEntry::switchOn() {
  g_key_file_remove_key(file_.get(), kGroup, kHidden, nullptr);
  g_key_file_set_boolean(file_.get(), kGroup, kGnomeEnabled, TRUE);
  if (!namesThisDesktop(file_.get(), G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN).value_or(true))
    g_key_file_remove_key(file_.get(), kGroup, G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN, nullptr);
  if (namesThisDesktop(file_.get(), G_KEY_FILE_DESKTOP_KEY_NOT_SHOW_IN).value_or(false))
    g_key_file_remove_key(file_.get(), kGroup, G_KEY_FILE_DESKTOP_KEY_NOT_SHOW_IN, nullptr);
}

void AutostartEntry::switchOff() {
  g_key_file_set_boolean(file_.get(), kGroup, kHidden, TRUE);
  g_key_file_set_boolean(file_.get(), kGroup, kGnomeEnabled, FALSE);
}

void AutostartEntry::setProgram(const std::string& program) {
  if (g_utf8_validate(program.data(), static_cast<gssize>(program.size()), nullptr) == FALSE)
    throw FileError("an autostart entry cannot name a program whose path is not UTF-8");
  const auto setIfMissing = [this](const char* key, const char* value) {
    if (g_key_file_has_key(file_.get(), kGroup, key, nullptr) == FALSE) set(key, value);
  };
  setIfMissing(G_KEY_FILE_DESKTOP_KEY_TYPE, G_KEY_FILE_DESKTOP_TYPE_APPLICATION);
  setIfMissing(G_KEY_FILE_DESKTOP_KEY_NAME, "Zelnor");
  setIfMissing(G_KEY_FILE_DESKTOP_KEY_ICON, "org.zelnor.Zelnor");
  set(G_KEY_FILE_DESKTOP_KEY_EXEC, (quotedForExec(program) + " --background").c_str());
  set(G_KEY_FILE_DESKTOP_KEY_TRY_EXEC, program.c_str());
}

std::string AutostartEntry::text() const {
  gsize length = 0;
  const GLibPointer<char> data(g_key_file_to_data(file_.get(), &length, nullptr));
  return {data.get(), length};
}

std::string quotedForExec(const std::string& argument) {
  constexpr std::string_view kReserved = " \t\n\"'\\><~|&;$*?#()`";
  const bool needsQuotes = argument.find_first_of(kReserved) != std::string::npos;
  std::string quoted;
  for (const char c : argument) {
    if (std::string_view("\"`$\\").find(c) != std::string_view::npos) quoted += '\\';
    if (c == '%') quoted += '%';  // or it would begin a field code
    quoted += c;
  }
  return needsQuotes ? '"' + quoted + '"' : quoted;
}

}  // namespace zelnor::platform
