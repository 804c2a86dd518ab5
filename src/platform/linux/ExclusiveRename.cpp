#include "platform/linux/ExclusiveRename.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "platform/linux/EntryStatus.h"
#include "platform/linux/LongPath.h"

namespace zelnor::platform {

namespace {

void checkRename(bool succeeded, const std::string& path) {
  if (!succeeded) throw std::system_error(errno, std::generic_category(), path);
}

ShortPath shortened(const std::string& path) {
  auto result = shorten(path);
  checkRename(result.rest != nullptr, path);
  return result;
}

int plainRename(const ShortPath& from, const ShortPath& to, unsigned flags) {
  return ::renameat2(from.folderOrCurrent(), from.rest, to.folderOrCurrent(), to.rest, flags);
}

bool isUnknownToFileSystem(int error) { return error == EINVAL || error == ENOSYS; }

void renameFolder(const ShortPath& from, const ShortPath& to, const std::string& path) {
  checkRename(::mkdirat(to.folderOrCurrent(), to.rest, S_IRWXU) == 0, path);
  if (plainRename(from, to, /*flags=*/0) == 0) return;
  const int reason = errno;
  ::unlinkat(to.folderOrCurrent(), to.rest, AT_REMOVEDIR);
  throw std::system_error(reason, std::generic_category(), path);
}

void renameByLinking(const ShortPath& from, const ShortPath& to, const std::string& path) {
  const int linked = ::linkat(from.folderOrCurrent(), from.rest, to.folderOrCurrent(), to.rest,
                              /*flags=*/0);
  checkRename(linked == 0, path);
  if (::unlinkat(from.folderOrCurrent(), from.rest, /*flags=*/0) == 0) return;
  const int reason = errno;
  ::unlinkat(to.folderOrCurrent(), to.rest, /*flags=*/0);
  throw std::system_error(reason, std::generic_category(), path);
}

bool isFolder(const ShortPath& path, const std::string& name) {
  const auto status = readStatus(path.folderOrCurrent(), path.rest);
  if (!status) throw std::system_error(errno, std::generic_category(), name);
  return attributesFrom(*status).isDirectory;
}

}  // namespace

void renameExclusively(const std::string& from, const std::string& to) {
  const auto source = shortened(from);
  const auto target = shortened(to);
  if (from == to) {
    checkRename(readStatus(source.folderOrCurrent(), source.rest).has_value(), from);
    return;
  }
  if (plainRename(source, target, RENAME_NOREPLACE) == 0) return;
  checkRename(isUnknownToFileSystem(errno), to);
  renameInSteps(from, to);
}

void renameInSteps(const std::string& from, const std::string& to) {
  const auto source = shortened(from);
  const auto target = shortened(to);
  const auto rename = isFolder(source, from) ? renameFolder : renameByLinking;
  rename(source, target, to);
}

}  // namespace zelnor::platform
