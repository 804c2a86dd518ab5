#include "bench/CreationStorm.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "bench/Stopwatch.h"
#include "bench/TreeNames.h"

namespace zelnor::bench {
namespace {

constexpr int kPerFolder = 1'000;
constexpr std::chrono::milliseconds kInterval{1};

void create(const std::filesystem::path& parent, int number, Random& random) {
  const auto folder = parent / std::to_string(number / kPerFolder);
  if (number % kPerFolder == 0) std::filesystem::create_directories(folder);
  const auto name = fileName(Theme::code, random);
  std::ofstream(folder / numberedName(name, static_cast<std::size_t>(number))).flush();
}

}  // namespace

void CreationStorm::run(Random& random) const {
  const int count = static_cast<int>(perSecond * seconds);
  const Stopwatch clock;
  for (int made = 0; made < count;) {
    const int due = static_cast<int>(clock.seconds() * perSecond);
    for (; made < count && made <= due; ++made) create(folder, made, random);
    std::this_thread::sleep_for(kInterval);
  }
}

}  // namespace zelnor::bench
