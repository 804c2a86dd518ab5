#include "platform/desktop/LongNameTrash.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>
#include <system_error>
#include <vector>

#include <glib.h>

#include "platform/FileDescriptor.h"
#include "platform/TemporaryFile.h"
#include "platform/desktop/GLib.h"
#include "platform/linux/ExclusiveRename.h"

namespace zelnor::platform {

namespace {

/// Leaves room for a number and for ".trashinfo".
constexpr std::size_t kShortName = 200;
constexpr int kMaxAttempts = 10'000;

struct TrashFolder {
  std::string path;
  std::string top;  ///< what the paths in it are relative to; empty if they are absolute
};

std::optional<struct stat> statusOf(const std::string& path) {
  struct stat status{};
  if (::lstat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
}

std::string folderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == 0 ? "/" : path.substr(0, slash);
}

/// The uppermost folder that is on the same file system as `path`.
std::string topOf(const std::string& path, dev_t device) {
  auto top = folderOf(path);
  while (top != "/") {
    const auto parent = folderOf(top);
    const auto status = statusOf(parent);
    if (!status || status->st_dev != device) break;
    top = parent;
  }
  return top;
}

/// Of the places that there are for a trash, one that this user has on this file system.
std::optional<TrashFolder> findTrash(const std::string& path, dev_t device) {
  const auto top = topOf(path, device);
  const auto inTop = top == "/" ? top : top + "/";
  const auto user = std::to_string(::getuid());
  const std::vector<TrashFolder> candidates{
      {.path = std::string(g_get_user_data_dir()) + "/Trash", .top = {}},
      {.path = inTop + ".Trash/" + user, .top = inTop},
      {.path = inTop + ".Trash-" + user, .top = inTop}};
  for (const auto& candidate : candidates) {
    const auto status = statusOf(candidate.path + "/files");
    if (status && S_ISDIR(status->st_mode) && status->st_dev == device &&
        status->st_uid == ::getuid()) {
      return candidate;
    }
  }
  return std::nullopt;
}

std::string noteAbout(const std::string& path, const TrashFolder& trash) {
  const auto relative = path.substr(trash.top.size());
  const GLibPointer<char> escaped(g_uri_escape_string(relative.c_str(), "/", /*allow_utf8=*/FALSE));
  const std::unique_ptr<GDateTime, decltype(&g_date_time_unref)> now(g_date_time_new_now_local(),
                                                                     g_date_time_unref);
  const GLibPointer<char> date(g_date_time_format(now.get(), "%Y-%m-%dT%H:%M:%S"));
  return std::string("[Trash Info]\nPath=") + escaped.get() + "\nDeletionDate=" + date.get() + "\n";
}

/// A note under a name that nothing in the trash has yet; without one the trash could not restore
/// the file, so it comes first.
std::optional<std::string> writeNote(const TrashFolder& trash, const std::string& path) {
  const auto stem = path.substr(path.rfind('/') + 1, kShortName);
  for (int number = 1; number < kMaxAttempts; ++number) {
    auto name = stem + '.' + std::to_string(number);
    const auto note = trash.path + "/info/" + name + ".trashinfo";
    const FileDescriptor file(
        ::open(note.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file && errno == EEXIST) continue;
    if (!file) return std::nullopt;
    if (writeAt(file, noteAbout(path, trash), /*offset=*/0)) return name;
    ::unlink(note.c_str());
    return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace

bool trashUnderShorterName(const std::string& path) {
  const auto status = statusOf(path);
  const auto trash = status ? findTrash(path, status->st_dev) : std::nullopt;
  const auto name = trash ? writeNote(*trash, path) : std::nullopt;
  if (!name) return false;
  try {
    renameExclusively(path, trash->path + "/files/" + *name);
    return true;
  } catch (const std::system_error&) {
    ::unlink((trash->path + "/info/" + *name + ".trashinfo").c_str());
    return false;
  }
}

}  // namespace zelnor::platform
