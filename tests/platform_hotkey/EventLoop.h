#pragma once

#include <chrono>
#include <functional>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

namespace zelnor::test {

/// Runs Qt's events until `condition` holds; answers whether it did before the hard time-out.
inline bool runUntil(const std::function<bool()>& condition,
                     std::chrono::milliseconds timeout = std::chrono::seconds(20)) {
  const QDeadlineTimer deadline(timeout);
  QTimer wakeUp;  // a condition may come true without an event
  wakeUp.start(std::chrono::milliseconds(5));
  while (!condition()) {
    if (deadline.hasExpired()) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

/// For what must not happen: there is nothing to wait for.
inline void runFor(std::chrono::milliseconds time) {
  runUntil([] { return false; }, time);
}

}  // namespace zelnor::test
