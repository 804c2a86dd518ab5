#pragma once

#include <string>
#include <variant>
#include <vector>

namespace zelnor::app {

/// Where the application works. Paths are absolute, in bytes.
struct Options {
  std::string homeFolder;
  std::string dataFolder;  ///< holds the index
  std::string settingsFolder;
  bool isApart = false;            ///< these folders are not the user's own
  std::vector<std::string> roots;  ///< to be indexed in place of the configured ones
  bool isInBackground = false;     ///< nothing is shown before it is asked for
  std::string action;  ///< what is to be done first: "preferences", "quit" or, empty, the panel

  /// What the command line says, on top of the user's own folders; or, if the program is to end at
  /// once (after a request for help, or a mistake, which has been reported in one line on standard
  /// error), its exit status.
  static std::variant<Options, int> parse(int argc, const char* const* argv);
};

}  // namespace zelnor::app
