#pragma once

#include <functional>
#include <string>

#include "platform/desktop/GLib.h"

namespace zelnor::platform {

/// Where the bus of the session listens, as far as the environment says; empty if it does not.
std::string sessionBusAddress();

/// A connection to a bus that never makes its thread wait, and comes back with the bus. Used on one
/// thread, whose GLib loop runs.
class BusSession {
 public:
  struct Events {
    std::function<void(GDBusConnection*)> connected;
    /// The connection is gone, or there was none; it is tried again by and by.
    std::function<void()> lost;
  };

  /// Connects soon; there are no events before `start`.
  BusSession(std::string address, Events events);
  ~BusSession();
  BusSession(const BusSession&) = delete;
  BusSession& operator=(const BusSession&) = delete;

  void start();

 private:
  static void opened(GObject* source, GAsyncResult* result, gpointer self);
  static void closed(GDBusConnection* bus, gboolean vanished, GError* error, gpointer self);
  static gboolean retried(gpointer self);

  void lose();

  const std::string address_;
  const Events events_;
  const GObjectPointer<GCancellable> cancellable_;
  GObjectPointer<GDBusConnection> bus_;
  guint retry_ = 0;         ///< the timer's number; 0 if none runs
  guint delaySeconds_ = 1;  ///< until the next attempt
};

/// What to call on a bus.
struct BusMethod {
  const char* service;
  const char* path;
  const char* interfaceName;
  const char* name;
};

/// Calls without waiting. `arguments` is floating and taken over. `answered` gets the answer, or
/// null for an error; it is not called if `cancellable` was cancelled meanwhile.
void callOnBus(GDBusConnection* bus, const BusMethod& method, GVariant* arguments,
               GCancellable* cancellable, std::function<void(GVariant*)> answered);

}  // namespace zelnor::platform
