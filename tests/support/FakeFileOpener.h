#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/ActivationSource.h"
#include "platform/FileOpener.h"

namespace zelnor::test {

/// Opens nothing, records what it should have opened, and fails if told to.
class FakeFileOpener final : public platform::FileOpener {
 public:
  void open(const std::string& path, const platform::Activation& activation) override {
    record("open " + path + " " + activation.token);
  }
  void reveal(const std::string& path, const platform::Activation& activation) override {
    record("reveal " + path + " " + activation.token);
  }

  std::vector<std::string> done() {
    const std::scoped_lock lock(mutex_);
    return done_;
  }

  bool fails = false;  ///< set before it is asked

 private:
  void record(std::string action) {
    const std::scoped_lock lock(mutex_);
    done_.push_back(std::move(action));
    if (fails) throw platform::FileError("cannot");
  }

  std::mutex mutex_;
  std::vector<std::string> done_;
};

/// Always the same activation; given when the test says so if it is `isSlow`.
class FakeActivationSource final : public platform::ActivationSource {
 public:
  void request(Ready ready) override {
    waiting.push_back(std::move(ready));
    if (!isSlow) give();
  }
  void give() {
    for (const auto& ready : std::exchange(waiting, {})) ready({.token = "token"});
  }

  bool isSlow = false;
  std::vector<Ready> waiting;
};

}  // namespace zelnor::test
