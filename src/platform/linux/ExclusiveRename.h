#pragma once

#include <string>

namespace zelnor::platform {

/// Renames without ever replacing what has the new name already, rename(2) with RENAME_NOREPLACE;
/// where the file system does not know that, by `renameInSteps`. Paths are absolute and of any
/// length. A path renamed to itself stays. Throws std::system_error, and everything is as it was.
void renameExclusively(const std::string& from, const std::string& to);

/// The same by other means. A folder takes the place of an empty one that is made for it, the only
/// thing that it can replace; anything else is linked to its new name and loses the old one. A file
/// system without hard links refuses the latter: looking first and renaming then might replace what
/// another program makes in between.
void renameInSteps(const std::string& from, const std::string& to);

}  // namespace zelnor::platform
