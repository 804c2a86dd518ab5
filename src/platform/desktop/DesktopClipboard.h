#pragma once

#include "platform/Clipboard.h"

namespace zelnor::platform {

/// Qt's clipboard. Needs a QGuiApplication.
class DesktopClipboard final : public Clipboard {
 public:
  void copyFiles(const std::vector<std::string>& paths) override;
  void copyText(const std::string& bytes) override;
};

}  // namespace zelnor::platform
