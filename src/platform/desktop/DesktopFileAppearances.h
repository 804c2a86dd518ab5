#pragma once

#include "platform/FileAppearances.h"

namespace zelnor::platform {

/// By GIO: content types by name, folders with a purpose (the home folder, downloads), and the
/// shared thumbnail cache (freedesktop.org thumbnail managing standard).
class DesktopFileAppearances final : public FileAppearances {
 public:
  FileAppearance appearance(const std::string& path, bool isFolder) override;
};

}  // namespace zelnor::platform
