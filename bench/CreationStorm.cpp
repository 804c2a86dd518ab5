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

}  // namespace

void CreationStorm::run(Random& random) const {
  const int count = static_cast<int>(perSecond * seconds);
  const Stopwatch clock;
  std::string current;
  for (int made = 0; made < count;) {
    const int due = static_cast<int>(clock.seconds() * perSecond);
    for (; made < count && made <= due; ++made) {
      if (made % kPerFolder == 0) {
        current = folder + "/" + std::to_string(made / kPerFolder);
        std::filesystem::create_directories(current);
      }
      const auto name = numberedName(fileName(Theme::code, random), static_cast<std::size_t>(made));
      std::ofstream(current + "/" + name).flush();
    }
    std::this_thread::sleep_for(kInterval);
  }
}

}  // namespace zelnor::bench
