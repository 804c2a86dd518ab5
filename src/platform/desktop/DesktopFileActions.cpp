#include "platform/desktop/DesktopFileActions.h"

#include <cerrno>
#include <string_view>
#include <system_error>

#include "platform/desktop/GLib.h"
#include "platform/desktop/LongNameTrash.h"
#include "platform/linux/ExclusiveRename.h"

namespace zelnor::platform {

namespace {

FileError systemError(int number) {
  FileError error(g_strerror(number));
  return error;
}

/// The kernel would take a name with a '/' in it for a way into another folder, and end one at a
/// NUL.
void checkSameFolder(std::string_view from, std::string_view to) {
  const auto folder = from.substr(0, from.rfind('/') + 1);
  const bool isBelow = to.starts_with(folder);
  const auto name = isBelow ? to.substr(folder.size()) : std::string_view();
  const bool isName = !name.empty() && name.find('/') == std::string_view::npos &&
                      name.find('\0') == std::string_view::npos;
  if (!isName) throw systemError(EINVAL);
}

}  // namespace

void DesktopFileActions::trash(const std::string& path) {
  GLibError error;
  if (g_file_trash(fileAt(path).get(), /*cancellable=*/nullptr, error.out()) != FALSE) return;
  if (error.is(G_IO_ERROR_FILENAME_TOO_LONG) && trashUnderShorterName(path)) return;
  throw error.toFileError();
}

void DesktopFileActions::rename(const std::string& from, const std::string& to) {
  checkSameFolder(from, to);
  try {
    renameExclusively(from, to);
  } catch (const std::system_error& error) {
    throw systemError(error.code().value());
  }
}

}  // namespace zelnor::platform
