#include "bench/MainThreadPulse.h"

#include <chrono>
#include <utility>

#include <QMetaObject>

#include "bench/Stopwatch.h"

namespace zelnor::bench {

MainThreadPulse::MainThreadPulse() : thread_([this](const std::stop_token& stop) { ask(stop); }) {}

std::vector<double> MainThreadPulse::stop() {
  thread_.request_stop();
  thread_.join();
  return std::move(waits_);
}

void MainThreadPulse::ask(const std::stop_token& stop) {
  constexpr std::chrono::milliseconds kInterval{1};
  while (!stop.stop_requested()) {
    QMetaObject::invokeMethod(
        &receiver_, [this, asked = Stopwatch()] { waits_.push_back(asked.seconds()); },
        Qt::QueuedConnection);
    std::this_thread::sleep_for(kInterval);
  }
}

}  // namespace zelnor::bench
