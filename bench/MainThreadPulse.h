#pragma once

#include <thread>
#include <vector>

#include <QObject>

namespace zelnor::bench {

/// Asks the main thread every millisecond, and takes down how long it takes to answer: as long as a
/// key would wait that is pressed then. Made and stopped on the main thread.
class MainThreadPulse {
 public:
  MainThreadPulse();

  /// Ends the asking; answers the waits so far, in seconds.
  std::vector<double> stop();

 private:
  void ask(const std::stop_token& stop);

  std::vector<double> waits_;  // main thread only
  QObject receiver_;
  std::jthread thread_;
};

}  // namespace zelnor::bench
