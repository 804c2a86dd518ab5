#pragma once

#include <optional>
#include <string>

namespace zelnor::cli {

/// Where an index is, and the settings of whoever keeps it. One that is named by its folder has
/// settings of its own there, so that nothing of the user's is touched.
struct IndexLocation {
  std::string dataFolder;
  std::string settingsFolder;
  bool isUsers = true;

  /// The index in `folder`, or the user's.
  static IndexLocation find(const std::optional<std::string>& folder);

  [[nodiscard]] std::string databasePath() const { return dataFolder + "/index.sqlite"; }
  /// Throws Failure, which says how to make one, if there is no index yet.
  void requireIndex() const;
};

}  // namespace zelnor::cli
