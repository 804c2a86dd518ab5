#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/desktop/BusObject.h"
#include "platform/desktop/BusSession.h"

namespace zelnor::test {

/// Runs what arrives on this thread until `condition` holds; throws after a minute.
inline void runLoopUntil(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  const auto tick = g_timeout_add(
      /*milliseconds=*/20, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
  while (!condition() && std::chrono::steady_clock::now() < deadline)
    g_main_context_iteration(/*context=*/nullptr, /*may_block=*/TRUE);
  g_source_remove(tick);
  if (!condition()) throw std::runtime_error("timed out");
}

/// A program with a bar: what status notifier items register with, and what then asks them.
class FakeWatcher {
 public:
  /// Is on the bus at `address` when the constructor returns, with a bar or without.
  FakeWatcher(std::string address, bool hasHost)
      : hasHost_(hasHost),
        session_(std::move(address),
                 {.connected = [this](GDBusConnection* bus) { connected(bus); }, .lost = [] {}}) {
    session_.start();
    runLoopUntil([this] { return isReady_; });
  }
  FakeWatcher(const FakeWatcher&) = delete;
  FakeWatcher& operator=(const FakeWatcher&) = delete;
  ~FakeWatcher() { g_cancellable_cancel(cancellable_.get()); }

  /// The items that registered, by the names of their connections.
  [[nodiscard]] const std::vector<std::string>& items() const { return items_; }

  void setRefuses() { refuses_ = true; }
  void setHasHost(bool hasHost) {
    hasHost_ = hasHost;
    g_dbus_connection_emit_signal(
        bus_, /*destination=*/nullptr, kPath, kName,
        hasHost ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered", nullptr,
        nullptr);
  }

  /// What the last item answers; null for an error. `arguments` is floating.
  platform::GLibPointer<GVariant> ask(const char* path, const char* interfaceName,
                                      const char* method, GVariant* arguments) {
    bool isAnswered = false;
    platform::GLibPointer<GVariant> answer;
    platform::callOnBus(bus_,
                        {.service = items_.back().c_str(),
                         .path = path,
                         .interfaceName = interfaceName,
                         .name = method},
                        arguments, cancellable_.get(), [&](GVariant* value) {
                          isAnswered = true;
                          if (value != nullptr) answer.reset(g_variant_ref(value));
                        });
    runLoopUntil([&] { return isAnswered; });
    return answer;
  }

 private:
  static constexpr const char* kName = "org.kde.StatusNotifierWatcher";
  static constexpr const char* kPath = "/StatusNotifierWatcher";
  static constexpr const char* kInterface =
      R"xml(<node><interface name="org.kde.StatusNotifierWatcher">
        <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
        <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
      </interface></node>)xml";

  void connected(GDBusConnection* bus) {
    bus_ = bus;
    const auto registerItem = [this](GVariant* arguments) {
      const char* name = nullptr;
      g_variant_get(arguments, "(&s)", &name);
      items_.emplace_back(name);
      return refuses_ ? nullptr : platform::BusObject::nothing();
    };
    object_ = std::make_unique<platform::BusObject>(
        bus, kPath,
        platform::BusObject::Description{
            .introspection = kInterface,
            .methods = {{"RegisterStatusNotifierItem", registerItem}},
            .properties = {{"IsStatusNotifierHostRegistered",
                            [this] { return g_variant_new_boolean(hasHost_ ? TRUE : FALSE); }}}});
    platform::callOnBus(bus,
                        {.service = "org.freedesktop.DBus",
                         .path = "/org/freedesktop/DBus",
                         .interfaceName = "org.freedesktop.DBus",
                         .name = "RequestName"},
                        g_variant_new("(su)", kName, 0U), cancellable_.get(),
                        [this](GVariant*) { isReady_ = true; });
  }

  bool hasHost_;
  bool isReady_ = false;
  bool refuses_ = false;
  std::vector<std::string> items_;
  const platform::GObjectPointer<GCancellable> cancellable_{g_cancellable_new()};
  platform::BusSession session_;
  GDBusConnection* bus_ = nullptr;
  std::unique_ptr<platform::BusObject> object_;
};

}  // namespace zelnor::test
