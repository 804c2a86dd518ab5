#pragma once

#include <string>
#include <utility>
#include <vector>

#include "results/FileOperationAlerts.h"

namespace zelnor::test {

/// Alerts that stay open until the test closes them.
class FakeAlerts final : public FileOperationAlerts {
 public:
  void warn(const std::string& message, const std::string& explanation, bool moreFollow,
            Closed closed) override {
    shown.push_back(message + ": " + explanation + (moreFollow ? " (more)" : ""));
    open.push_back(std::move(closed));
  }
  /// Closes the one that is open.
  void close(bool goOn) {
    const auto closed = std::move(open.front());
    open.erase(open.begin());
    closed(goOn);
  }

  std::vector<std::string> shown;
  std::vector<Closed> open;
};

}  // namespace zelnor::test
