#pragma once

#include <map>
#include <mutex>
#include <semaphore>
#include <string>
#include <utility>
#include <vector>

#include "platform/FileActions.h"

namespace zelnor::test {

/// Actions on files that touch none: they are recorded, and fail as the test says.
class FakeFileActions final : public platform::FileActions {
 public:
  void trash(const std::string& path) override {
    if (isHeld) go_.acquire();
    record("trash " + path);
    failIfTold(path);
  }
  void rename(const std::string& from, const std::string& to) override {
    record("rename " + from + " to " + to);
    failIfTold(from);
  }

  /// What was done, in order.
  std::vector<std::string> done() {
    const std::scoped_lock lock(mutex_);
    return done_;
  }
  /// Lets one more `trash` begin if they are held.
  void release() { go_.release(); }

  // Set these before the actions begin.
  std::map<std::string, std::string> failures;  ///< reasons by path
  bool isHeld = false;                          ///< each trash waits for a `release`

 private:
  void record(std::string action) {
    const std::scoped_lock lock(mutex_);
    done_.push_back(std::move(action));
  }
  void failIfTold(const std::string& path) const {
    const auto failure = failures.find(path);
    if (failure != failures.end()) throw platform::FileError(failure->second);
  }

  std::mutex mutex_;
  std::vector<std::string> done_;
  std::counting_semaphore<> go_{0};
};

}  // namespace zelnor::test
