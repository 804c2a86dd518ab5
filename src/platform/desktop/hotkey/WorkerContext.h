#pragma once

#include <chrono>
#include <functional>

#include "platform/desktop/GLib.h"

namespace zelnor::platform {

/// The main context of a thread that waits for GLib's events, and what ends the waiting.
class WorkerContext {
 public:
  WorkerContext();
  WorkerContext(const WorkerContext&) = delete;
  WorkerContext& operator=(const WorkerContext&) = delete;
  ~WorkerContext();

  /// Makes it the context of the calling thread while `work` runs.
  void runWith(const std::function<void()>& work);

  /// Runs what arrives until `condition` holds. Throws Cancelled when it is.
  void waitFor(const std::function<bool()>& condition);
  /// Runs what arrives for so long. Throws Cancelled when it is.
  void waitFor(std::chrono::milliseconds time);

  [[nodiscard]] GCancellable* cancellable() const { return cancellable_.get(); }
  /// From any thread: whatever waits ends.
  void cancel();

 private:
  GMainContext* context_;
  GObjectPointer<GCancellable> cancellable_;
};

}  // namespace zelnor::platform
