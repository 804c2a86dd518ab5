#pragma once

#include <string>

namespace zelnor::app {

/// Opens the file or folder at `path` (absolute, bytes) with the desktop's default application for
/// it.
void openFile(const std::string& path);

}  // namespace zelnor::app
