#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zelnor::platform {

/// How long a replaced file takes to be on disk.
enum class Flushing : std::uint8_t {
  now,   ///< it is there when the call returns
  later  ///< when the system writes it; until then a power failure may leave it empty or damaged
};

/// Replaces the file at `path` by one with this content, readable by its owner alone (0600):
/// whoever reads, also after a crash, sees the old content or the new, never a part.
///
/// It is written to `path` + ".new" first; callers see to it that there is one writer at a time.
/// Throws std::system_error, and the old content stays.
void replaceFile(const std::string& path, std::string_view content,
                 Flushing flushing = Flushing::now);

/// The whole content of the file at `path`, or nothing if there is no such file. Throws
/// std::system_error if it cannot be read.
std::optional<std::string> readFile(const std::string& path);

/// Renames a damaged file to `path` + ".damaged-" and the first free number, so that its owner can
/// mend it. A file that is gone needs nothing. Throws std::system_error, and the file stays.
void setAside(const std::string& path);

}  // namespace zelnor::platform
