#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <random>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace zelnor::test {

/// A name that is hard on whoever takes names for text. Unique through `number`.
inline std::string hardName(std::mt19937& random, int number) {
  static const std::array<std::string, 12> kStems{
      "Bericht \xC3\xBC"
      "ber",
      "\xE6\x8A\xA5\xE5\x91\x8A",
      "not\xff\xfe"
      "utf8",
      "new\nline",
      "it's",
      "\"quoted\"",
      "%_like",
      "*?[glob]",
      ".hidden",
      "UPPER lower",
      "tab\there",
      "a.b.c"};
  auto name = kStems.at(random() % kStems.size()) + std::to_string(number);
  if (random() % 50 == 0) name.append(255 - name.size(), 'x');
  return name;
}

/// Makes about `count` entries below `folder`: hard names, folders, links, sizes and times of all
/// kinds.
inline void makeHardTree(const TemporaryFolder& folder, int count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::string> folders{folder.path()};
  for (int i = 0; i < count; ++i) {
    // Most go where many are already, so that some folders are large and some paths deep.
    const auto& parent =
        folders[random() % 3 == 0 ? folders.size() - 1 : random() % folders.size()];
    const auto path = parent + "/" + hardName(random, i);
    const auto dice = random() % 100;
    if (dice < 8 && parent.size() < 200) {
      if (mkdir(path.c_str(), 0700) == 0) folders.push_back(path);
    } else if (dice < 12) {
      if (symlink("/nowhere", path.c_str()) != 0) continue;
    } else {
      const int file = open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
      if (file < 0) continue;
      if (dice < 30 && ftruncate(file, static_cast<off_t>(random() % 5'000'000'000ULL)) != 0)
        continue;
      const timespec time{.tv_sec = static_cast<time_t>(random()) - 1'000'000'000,
                          .tv_nsec = 500'000'000};
      const std::array times{time, time};
      if (dice < 60) futimens(file, times.data());
      close(file);
    }
  }
}

}  // namespace zelnor::test
