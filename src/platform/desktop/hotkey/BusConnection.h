#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/desktop/GLib.h"

namespace zelnor::platform {

/// There is no bus, no such service, or it answers with an error.
class BusError final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What was called off by the cancellable.
class Cancelled final : public std::exception {};

/// A connection to the session's bus of its own, so that everything a service holds for it ends
/// with it. One thread, whose own main context delivers the signals; calls wait for their answers,
/// at most until `cancellable` is cancelled, and throw BusError or Cancelled.
class BusConnection {
 public:
  using Signal = std::function<void(GVariant* arguments)>;
  struct Method {
    const char* service;
    const char* path;
    const char* interface;
    const char* name;
  };

  /// Connects; the thread's default main context and `cancellable` outlive the connection.
  explicit BusConnection(GCancellable* cancellable);
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;
  ~BusConnection();

  /// `arguments` is floating and taken over. A service that is not running is started.
  GLibPointer<GVariant> call(const Method& method, GVariant* arguments) const;
  /// `heard` runs while the context does, for as long as the connection lives. `argument` is the
  /// first one that counts, a text; null for all.
  void subscribe(const Method& signal, const char* argument, Signal heard);
  /// The name that the bus gave to this connection, ":1.7".
  [[nodiscard]] std::string uniqueName() const;
  [[nodiscard]] bool isClosed() const;

 private:
  GCancellable* cancellable_;
  GObjectPointer<GDBusConnection> bus_;
  std::vector<guint> subscriptions_;
};

}  // namespace zelnor::platform
