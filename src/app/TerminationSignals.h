#pragma once

#include <chrono>

#include <QObject>
#include <QSocketNotifier>

#include "platform/FileDescriptor.h"

namespace zelnor::app {

/// Turns the first SIGINT, SIGTERM or SIGHUP into an event of the main thread. One per process.
class TerminationSignals final : public QObject {
  Q_OBJECT

 public:
  TerminationSignals();
  /// Gives the signals back their usual effect.
  ~TerminationSignals() override;

 Q_SIGNALS:
  void received();

 private:
  platform::FileDescriptor event_;
  QSocketNotifier notifier_;
};

/// From now on the process ends successfully after `patience` at the latest, whatever still runs.
void limitEnding(std::chrono::milliseconds patience);

}  // namespace zelnor::app
