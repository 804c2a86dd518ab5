#pragma once

#include "platform/FileActions.h"

namespace zelnor::platform {

/// Trash by GIO (the freedesktop.org trash specification), renaming by the kernel.
class DesktopFileActions final : public FileActions {
 public:
  void trash(const std::string& path) override;
  void rename(const std::string& from, const std::string& to) override;
};

}  // namespace zelnor::platform
