#pragma once

#include <string>

#include "platform/AccessCheck.h"

namespace zelnor::platform {

/// A Linux desktop has no switch for this: a process may read what its user may, unless it runs
/// confined (Flatpak, Snap) and was not given the host's files.
class DesktopAccessCheck final : public AccessCheck {
 public:
  /// How this process runs.
  struct Surroundings {
    std::string root;  ///< stands before every path that the check looks at
    std::string home;  ///< the user's real home, which a Snap is not told by $HOME
    bool isInSnap = false;

    static Surroundings current();
  };

  explicit DesktopAccessCheck(Surroundings surroundings = Surroundings::current());

  [[nodiscard]] bool hasFullDiskAccess() const override;

 private:
  [[nodiscard]] bool isFlatpakWithoutHost() const;
  [[nodiscard]] bool canList(const std::string& folder) const;
  [[nodiscard]] bool isMissing(const std::string& folder) const;

  const Surroundings surroundings_;
};

}  // namespace zelnor::platform
