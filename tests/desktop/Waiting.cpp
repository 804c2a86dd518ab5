#include "tests/desktop/Waiting.h"

#include <chrono>
#include <thread>

namespace zelnor::test {

namespace {
constexpr auto kPatience = std::chrono::seconds(10);
constexpr auto kBetweenLooks = std::chrono::milliseconds(10);
}  // namespace

bool waitUntil(const std::function<bool()>& condition) {
  const auto tooLate = std::chrono::steady_clock::now() + kPatience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > tooLate) return false;
    std::this_thread::sleep_for(kBetweenLooks);
  }
  return true;
}

}  // namespace zelnor::test
