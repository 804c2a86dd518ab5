#pragma once

#include "platform/FileActions.h"

namespace zelnor::platform {

/// Trash by GIO, so that every file manager can bring back what was put there; renaming by the
/// kernel, which alone can promise to replace nothing.
class DesktopFileActions final : public FileActions {
 public:
  void trash(const std::string& path) override;
  void rename(const std::string& from, const std::string& to) override;
};

}  // namespace zelnor::platform
