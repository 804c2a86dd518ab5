#pragma once

#include "platform/FileOpener.h"

namespace zelnor::platform {

/// Default applications by GIO; the file manager by D-Bus, org.freedesktop.FileManager1.
class DesktopFileOpener final : public FileOpener {
 public:
  void open(const std::string& path, const Activation& activation) override;
  void reveal(const std::string& path, const Activation& activation) override;
};

}  // namespace zelnor::platform
