#include "platform/desktop/hotkey/BusConnection.h"

#include <memory>
#include <utility>

namespace zelnor::platform {

namespace {

/// Long enough for a service that the bus has to start first.
constexpr int kAnswerMilliseconds = 25'000;

[[noreturn]] void fail(GError* owned) {
  const std::unique_ptr<GError, decltype(&g_error_free)> error(owned, g_error_free);
  if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE) throw Cancelled();
  throw BusError(error->message);
}

void heardSignal(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                 const char* /*interface*/, const char* /*signal*/, GVariant* arguments,
                 gpointer heard) {
  (*static_cast<BusConnection::Signal*>(heard))(arguments);
}

}  // namespace

BusConnection::BusConnection(GCancellable* cancellable) : cancellable_(cancellable) {
  GError* error = nullptr;
  const GLibPointer<char> address(
      g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, cancellable, &error));
  if (!address) fail(error);
  constexpr auto kFlags =
      // NOLINTNEXTLINE(clang-analyzer-optin.core.EnumCastOutOfRange): these are bits
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  bus_.reset(g_dbus_connection_new_for_address_sync(address.get(), kFlags, /*observer=*/nullptr,
                                                    cancellable, &error));
  if (!bus_) fail(error);
}

BusConnection::~BusConnection() {
  for (const auto subscription : subscriptions_) {
    g_dbus_connection_signal_unsubscribe(bus_.get(), subscription);
  }
  g_dbus_connection_close(bus_.get(), /*cancellable=*/nullptr, /*callback=*/nullptr,
                          /*user_data=*/nullptr);
}

GLibPointer<GVariant> BusConnection::call(const Method& method, GVariant* arguments) const {
  GError* error = nullptr;
  GLibPointer<GVariant> answer(g_dbus_connection_call_sync(
      bus_.get(), method.service, method.path, method.interface, method.name, arguments,
      /*reply_type=*/nullptr, G_DBUS_CALL_FLAGS_NONE, kAnswerMilliseconds, cancellable_, &error));
  if (!answer) fail(error);
  return answer;
}

void BusConnection::subscribe(const Method& signal, const char* argument, Signal heard) {
  subscriptions_.push_back(g_dbus_connection_signal_subscribe(
      bus_.get(), signal.service, signal.interface, signal.name, signal.path, argument,
      G_DBUS_SIGNAL_FLAGS_NONE, heardSignal,
      new Signal(std::move(heard)),  // NOLINT(cppcoreguidelines-owning-memory): the bus frees it
      [](gpointer owned) { delete static_cast<Signal*>(owned); }));
}

std::string BusConnection::uniqueName() const {
  return g_dbus_connection_get_unique_name(bus_.get());
}

bool BusConnection::isClosed() const { return g_dbus_connection_is_closed(bus_.get()) != FALSE; }

}  // namespace zelnor::platform
