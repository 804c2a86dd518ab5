#pragma once

#include <string>
#include <vector>

#include "platform/LoginItem.h"

namespace zelnor::platform {

/// An autostart entry (freedesktop.org's Desktop Application Autostart), called zelnor.desktop, in
/// the user's folder; one that the system has of that name counts where the user has none. The
/// user's other keys in it stay. Thread-safe as long as one thread writes; waits for the disk.
class DesktopLoginItem final : public LoginItem {
 public:
  /// Absolute paths, in bytes.
  struct Places {
    std::string userFolder;                  ///< the user's autostart folder
    std::vector<std::string> systemFolders;  ///< the first counts most
    std::string program;                     ///< what is to be started
    std::vector<std::string> searchPath;     ///< where programs are found by name alone

    /// Those of this process.
    static Places current();
  };

  explicit DesktopLoginItem(Places places = Places::current());

  [[nodiscard]] Status status() const override;
  void registerItem() override;
  void unregisterItem() override;

 private:
  [[nodiscard]] std::string userFile() const;
  [[nodiscard]] std::string systemFile() const;
  [[nodiscard]] bool isOnSearchPath() const;
  [[nodiscard]] bool isRunnable(const std::string& program) const;

  const Places places_;
};

}  // namespace zelnor::platform
