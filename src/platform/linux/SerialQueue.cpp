#include "platform/SerialQueue.h"

#include <pthread.h>

#include "platform/Priority.h"

namespace zelnor::platform {

namespace {

constexpr std::size_t kMaxThreadName = 15;

}  // namespace

SerialQueue::SerialQueue(std::string label, Priority priority) {
  label.resize(std::min(label.size(), kMaxThreadName));
  thread_ = std::thread([this, label = std::move(label), priority] {
    ::pthread_setname_np(::pthread_self(), label.c_str());
    if (priority == Priority::background) enterBackgroundPriority();
    run();
  });
}

SerialQueue::~SerialQueue() { stop(); }

void SerialQueue::stop() {
  {
    const std::scoped_lock lock(mutex_);
    isStopping_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void SerialQueue::postAt(TimePoint due, Work work) {
  const std::scoped_lock lock(mutex_);
  if (isStopping_) return;
  waiting_.emplace(due, std::move(work));
  changed_.notify_all();
}

void SerialQueue::waitForRunning() {
  if (std::this_thread::get_id() == thread_.get_id()) return;
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return !isRunning_; });
}

void SerialQueue::run() {
  std::unique_lock lock(mutex_);
  while (!isStopping_) {
    if (waiting_.empty()) {
      changed_.wait(lock);
    } else if (const auto due = waiting_.begin()->first; due > std::chrono::steady_clock::now()) {
      changed_.wait_until(lock, due);
    } else {
      runNext(lock);
    }
  }
}

void SerialQueue::runNext(std::unique_lock<std::mutex>& lock) {
  auto item = waiting_.extract(waiting_.begin());
  isRunning_ = true;
  lock.unlock();
  item.mapped()();
  item = {};  // what the work owns goes away without the lock
  lock.lock();
  isRunning_ = false;
  changed_.notify_all();
}

}  // namespace zelnor::platform
