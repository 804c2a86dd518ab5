#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace zelnor::platform {

/// A thread that runs what is posted to it, one item at a time, in the order in which the items
/// fall due. It sleeps while there is nothing to do.
///
/// Thread-safe. What still waits when the queue is destroyed is dropped; the item that runs is
/// waited for, so an item must not destroy its own queue.
class SerialQueue {
 public:
  using Work = std::function<void()>;
  using TimePoint = std::chrono::steady_clock::time_point;
  enum class Priority : std::uint8_t {
    utility,    ///< as the process
    background  ///< runs when nobody else wants the machine
  };

  /// `label` names the thread for debuggers; the first 15 bytes count (prctl(2), PR_SET_NAME).
  explicit SerialQueue(std::string label, Priority priority = Priority::utility);
  SerialQueue(const SerialQueue&) = delete;
  SerialQueue& operator=(const SerialQueue&) = delete;
  ~SerialQueue();

  void post(Work work) { postAt(std::chrono::steady_clock::now(), std::move(work)); }
  void postAt(TimePoint due, Work work);

  /// Waits for the item that runs now, if any; drops what waits and what is posted from then on.
  /// Not to be called by an item.
  void stop();

  /// Returns when the item that runs now, if any, has ended. At once on the queue's own thread.
  void waitForRunning();

 private:
  void run();
  void runNext(std::unique_lock<std::mutex>& lock);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::multimap<TimePoint, Work> waiting_;
  bool isRunning_ = false;
  bool isStopping_ = false;
  std::thread thread_;
};

}  // namespace zelnor::platform
