#include "cli/Progress.h"

#include <unistd.h>

#include <iomanip>
#include <iostream>
#include <sstream>

namespace zelnor::cli {

Progress::Progress() : isShown_(::isatty(STDERR_FILENO) == 1) {}

void Progress::show(std::int64_t entries) { replaceLine(grouped(entries) + " entries"); }

void Progress::finish(std::int64_t entries) {
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
  std::ostringstream line;
  line << grouped(entries) << " entries in " << std::fixed << std::setprecision(1)
       << elapsed.count() << " s\n";
  replaceLine(line.str());
}

void Progress::replaceLine(const std::string& text) const {
  // To the start of the line, and erase to its end: ECMA-48, EL.
  if (isShown_) std::cerr << "\r\x1B[K" << text << std::flush;
}

std::string grouped(std::int64_t number) {
  constexpr std::size_t kGroup = 3;
  auto digits = std::to_string(number);
  const std::size_t firstDigit = number < 0 ? 1 : 0;
  for (auto end = digits.size(); end > firstDigit + kGroup; end -= kGroup)
    digits.insert(end - kGroup, 1, ',');
  return digits;
}

}  // namespace zelnor::cli
