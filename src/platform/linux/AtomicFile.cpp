#include "platform/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "platform/FileDescriptor.h"

namespace zelnor::platform {

namespace {

void check(bool succeeded, const std::string& path) {
  if (!succeeded) throw std::system_error(errno, std::generic_category(), path);
}

void writeAll(const FileDescriptor& file, std::string_view content, const std::string& path) {
  while (!content.empty()) {
    const auto written = ::write(file.get(), content.data(), content.size());
    check(written >= 0 || errno == EINTR, path);
    if (written > 0) content.remove_prefix(static_cast<std::size_t>(written));
  }
}

void writeNew(const std::string& path, std::string_view content, Flushing flushing) {
  ::unlink(path.c_str());  // left over by a process that died
  const FileDescriptor file(
      ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
  check(static_cast<bool>(file), path);
  writeAll(file, content, path);
  // The content must be on disk before the name is, see rename(2) and fsync(2).
  check(flushing == Flushing::later || ::fsync(file.get()) == 0, path);
}

/// Makes a rename in the folder of `path` last. It has happened either way, so errors are of no
/// use.
void syncFolder(const std::string& path) {
  const auto slash = path.rfind('/');
  const auto folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  const FileDescriptor file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (file) ::fsync(file.get());
}

}  // namespace

void replaceFile(const std::string& path, std::string_view content, Flushing flushing) {
  const auto replacement = path + ".new";
  try {
    writeNew(replacement, content, flushing);
    check(std::rename(replacement.c_str(), path.c_str()) == 0, path);
  } catch (...) {
    ::unlink(replacement.c_str());
    throw;
  }
  if (flushing == Flushing::now) syncFolder(path);
}

std::optional<std::string> readFile(const std::string& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file && errno == ENOENT) return std::nullopt;
  check(static_cast<bool>(file), path);
  auto content = readAll(file);
  check(content.has_value(), path);
  return content;
}

void setAside(const std::string& path) {
  for (unsigned number = 1;; ++number) {
    const auto aside = path + ".damaged-" + std::to_string(number);
    const auto renamed =
        ::renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, aside.c_str(), RENAME_NOREPLACE) == 0;
    if (renamed || errno == ENOENT) return;
    check(errno == EEXIST, aside);
  }
}

}  // namespace zelnor::platform
