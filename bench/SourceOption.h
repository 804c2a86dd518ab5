#pragma once

#include <map>
#include <string>

#include <CLI/CLI.hpp>

#include "bench/FollowedIndex.h"

namespace zelnor::bench {

/// Adds the option that says how changes are followed.
inline void addSourceOption(CLI::App& command, FollowedIndex::Source& source) {
  using Kind = platform::ChangeSourceKind;
  static const std::map<std::string, Kind> kinds{{"mark", Kind::fileSystemMark},
                                                 {"folder-marks", Kind::folderMarks},
                                                 {"inotify", Kind::inotify},
                                                 {"sweep", Kind::sweep}};
  command
      .add_option_function<Kind>(
          "--source", [&source](Kind kind) { source = kind; },
          "How to follow changes; the best way if not given")
      ->transform(CLI::CheckedTransformer(kinds));
}

}  // namespace zelnor::bench
