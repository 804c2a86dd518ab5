#pragma once

#include <string>

namespace zelnor::platform {

/// Moves a file to the trash under a shortened name. For names that are so long that nothing can be
/// added to them, which GIO refuses: the trash keeps a file named after each.
///
/// To be called after GIO has tried, because GIO has made the trash folder then and seen to it that
/// the file system may have one. The note beside the file is as file managers write it, with the
/// whole name, which restoring gives back. Answers false, and nothing has happened, if it cannot.
bool trashUnderShorterName(const std::string& path);

}  // namespace zelnor::platform
