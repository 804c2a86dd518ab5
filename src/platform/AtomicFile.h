#pragma once

#include <string>
#include <string_view>

namespace zelnor::platform {

/// Replaces the file at `path` by one with this content, readable by its owner alone (0600):
/// whoever reads, also after a crash, sees the old content or the new, never a part.
///
/// It is written to `path` + ".new" first; callers see to it that there is one writer at a time.
/// Throws std::system_error, and the old content stays.
void replaceFile(const std::string& path, std::string_view content);

}  // namespace zelnor::platform
