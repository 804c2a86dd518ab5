#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/FileAppearances.h"
#include "platform/IconFinder.h"

namespace zelnor::test {

/// What the disk of a made-up desktop answers, and what it was asked. Touched by the tests only
/// while nothing is being looked up.
struct FakeDesktopLooks {
  std::map<std::string, platform::FileAppearance> appearances;  ///< by path
  std::map<std::string, std::string> icons;                     ///< picture files by icon name
  std::vector<std::string> asked;                               ///< paths, and names of icons
};

class FakeFileAppearances final : public platform::FileAppearances {
 public:
  explicit FakeFileAppearances(FakeDesktopLooks& looks) : looks_(looks) {}
  platform::FileAppearance appearance(const std::string& path, bool /*isFolder*/) override {
    looks_.asked.push_back(path);
    return looks_.appearances[path];
  }

 private:
  FakeDesktopLooks& looks_;
};

class FakeIconFinder final : public platform::IconFinder {
 public:
  explicit FakeIconFinder(FakeDesktopLooks& looks) : looks_(looks) {}
  std::optional<std::string> find(std::span<const std::string> names, int /*pixels*/) override {
    looks_.asked.push_back("icon " + (names.empty() ? std::string() : names.front()));
    for (const auto& name : names) {
      const auto found = looks_.icons.find(name);
      if (found != looks_.icons.end()) return found->second;
    }
    return std::nullopt;
  }

 private:
  FakeDesktopLooks& looks_;
};

}  // namespace zelnor::test
