#include "platform/desktop/BusSession.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

namespace zelnor::platform {

namespace {

constexpr guint kLongestDelaySeconds = 60;
constexpr int kAnswerMilliseconds = 10'000;

using Answered = std::function<void(GVariant*)>;

void busAnswered(GObject* source, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Answered> answered(static_cast<Answered*>(data));
  GLibError error;
  const GLibPointer<GVariant> answer(g_dbus_connection_call_finish(
      reinterpret_cast<GDBusConnection*>(source), result, error.out()));
  if (!error.is(G_IO_ERROR_CANCELLED)) (*answered)(answer.get());
}

}  // namespace

std::string sessionBusAddress() {
  const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  if (address != nullptr && *address != '\0') return address;
  // GLib would go on and start a bus of its own, where nobody is.
  const char* const folder = std::getenv("XDG_RUNTIME_DIR");
  if (folder == nullptr || *folder == '\0') return {};
  const GLibPointer<char> escaped(
      g_dbus_address_escape_value((std::string(folder) + "/bus").c_str()));
  return std::string("unix:path=") + escaped.get();
}

BusSession::BusSession(std::string address, Events events)
    : address_(std::move(address)), events_(std::move(events)), cancellable_(g_cancellable_new()) {}

BusSession::~BusSession() {
  g_cancellable_cancel(cancellable_.get());
  if (retry_ != 0) g_source_remove(retry_);
  if (bus_) {
    g_signal_handlers_disconnect_by_data(bus_.get(), this);
    g_dbus_connection_close(bus_.get(), /*cancellable=*/nullptr, /*callback=*/nullptr,
                            /*user_data=*/nullptr);
  }
}

void BusSession::start() {
  // NOLINTBEGIN(clang-analyzer-optin.core.EnumCastOutOfRange): bits
  constexpr auto kFlags =
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  // NOLINTEND(clang-analyzer-optin.core.EnumCastOutOfRange)
  g_dbus_connection_new_for_address(address_.c_str(), kFlags, /*observer=*/nullptr,
                                    cancellable_.get(), opened, this);
}

void BusSession::opened(GObject* /*source*/, GAsyncResult* result, gpointer self) {
  GLibError error;
  GObjectPointer<GDBusConnection> bus(
      g_dbus_connection_new_for_address_finish(result, error.out()));
  if (error.is(G_IO_ERROR_CANCELLED)) return;
  auto& session = *static_cast<BusSession*>(self);
  if (!bus) return session.lose();
  session.bus_ = std::move(bus);
  session.delaySeconds_ = 1;
  g_signal_connect(session.bus_.get(), "closed", G_CALLBACK(closed), self);
  session.events_.connected(session.bus_.get());
}

void BusSession::closed(GDBusConnection* /*bus*/, gboolean /*vanished*/, GError* /*error*/,
                        gpointer self) {
  static_cast<BusSession*>(self)->lose();
}

void BusSession::lose() {
  if (!address_.empty()) retry_ = g_timeout_add_seconds(delaySeconds_, retried, this);
  delaySeconds_ = std::min(2 * delaySeconds_, kLongestDelaySeconds);
  events_.lost();
  bus_.reset();
}

gboolean BusSession::retried(gpointer self) {
  auto& session = *static_cast<BusSession*>(self);
  session.retry_ = 0;
  session.start();
  return G_SOURCE_REMOVE;
}

void callOnBus(GDBusConnection* bus, const BusMethod& method, GVariant* arguments,
               GCancellable* cancellable, std::function<void(GVariant*)> answered) {
  g_dbus_connection_call(bus, method.service, method.path, method.interfaceName, method.name,
                         arguments, /*reply_type=*/nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
                         kAnswerMilliseconds, cancellable, busAnswered,
                         // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): handed to busAnswered
                         new Answered(std::move(answered)));
}

}  // namespace zelnor::platform
