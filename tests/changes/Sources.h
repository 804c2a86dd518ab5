#pragma once

#include <unistd.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ChangeStream.h"

namespace zelnor::test {

/// Those that work for the user who runs the tests.
inline std::vector<platform::ChangeSourceKind> possibleSources() {
  using Kind = platform::ChangeSourceKind;
  std::vector sources{Kind::folderMarks, Kind::inotify, Kind::sweep};
  if (::geteuid() == 0) sources.push_back(Kind::fileSystemMark);
  return sources;
}

inline std::string nameOf(const testing::TestParamInfo<platform::ChangeSourceKind>& info) {
  switch (info.param) {
    case platform::ChangeSourceKind::fileSystemMark:
      return "FileSystemMark";
    case platform::ChangeSourceKind::folderMarks:
      return "FolderMarks";
    case platform::ChangeSourceKind::inotify:
      return "Inotify";
    case platform::ChangeSourceKind::sweep:
      break;
  }
  return "Sweep";
}

}  // namespace zelnor::test
