#include "platform/desktop/tray/DesktopTrayItem.h"

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include <QGuiApplication>

#include "platform/desktop/IconTheme.h"
#include "platform/desktop/StartupId.h"

namespace zelnor::platform {

namespace {

constexpr const char* kWatcher = "org.kde.StatusNotifierWatcher";
constexpr const char* kWatcherPath = "/StatusNotifierWatcher";

/// Whether every bar can find the icon by its name.
bool isInstalled(const std::string& icon) {
  const auto file = "/hicolor/symbolic/apps/" + icon + ".svg";
  for (const auto& folder : iconBaseFolders()) {
    std::error_code unreadable;
    if (std::filesystem::exists(folder + file, unreadable)) return true;
  }
  return false;
}

void lookUpIcon(GTask* task, gpointer /*source*/, gpointer name, GCancellable* /*cancellable*/) {
  g_task_return_boolean(task, isInstalled(static_cast<const char*>(name)) ? TRUE : FALSE);
}

Activation activationOf(std::string token, std::uint32_t time) {
  if (!token.empty()) return {std::move(token)};
  const bool isX11 = QGuiApplication::platformName() == QStringLiteral("xcb");
  return {isX11 && isRecentInputTime(time) ? startupId(time) : std::string()};
}

}  // namespace

DesktopTrayItem::DesktopTrayItem(std::string busAddress)
    : cancellable_(g_cancellable_new()),
      session_(std::move(busAddress),
               {.connected = [this](auto* bus) { connected(bus); }, .lost = [this] { lost(); }}) {}

DesktopTrayItem::~DesktopTrayItem() {
  g_cancellable_cancel(cancellable_.get());
  events_ = {};
  lost();
}

void DesktopTrayItem::show(Description description, Events events) {
  description_ = std::move(description);
  events_ = std::move(events);
  const GObjectPointer<GTask> task(
      g_task_new(/*source_object=*/nullptr, cancellable_.get(), iconLookedUp, this));
  g_task_set_task_data(task.get(), g_strdup(description_.iconName.c_str()), g_free);
  g_task_run_in_thread(task.get(), lookUpIcon);
}

void DesktopTrayItem::iconLookedUp(GObject* /*source*/, GAsyncResult* result, gpointer self) {
  GLibError error;
  const bool isFound =
      g_task_propagate_boolean(reinterpret_cast<GTask*>(result), error.out()) != FALSE;
  if (error.is(G_IO_ERROR_CANCELLED)) return;
  auto& item = *static_cast<DesktopTrayItem*>(self);
  if (!isFound) item.description_.iconName.clear();
  item.session_.start();
}

void DesktopTrayItem::connected(GDBusConnection* bus) {
  bus_ = bus;
  menu_ = std::make_unique<MenuObject>(
      bus, description_.menu,
      [this](std::size_t entry, std::uint32_t time) { chosen(entry, time); });
  item_ = std::make_unique<ItemObject>(
      bus, description_,
      ItemObject::Events{
          .menuRequested = [this](int x, int y) { return events_.menuRequested(x, y); },
          .tokenProvided = [this](std::string token) { token_ = std::move(token); }});
  hosts_ = g_dbus_connection_signal_subscribe(
      bus, kWatcher, kWatcher, /*member=*/nullptr, kWatcherPath, /*arg0=*/nullptr,
      G_DBUS_SIGNAL_FLAGS_NONE, hostsChanged, this, /*user_data_free_func=*/nullptr);
  watch_ = g_bus_watch_name_on_connection(bus, kWatcher, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                          watcherAppeared, watcherVanished, this,
                                          /*user_data_free_func=*/nullptr);
}

void DesktopTrayItem::lost() {
  if (bus_ != nullptr) {
    g_bus_unwatch_name(watch_);
    g_dbus_connection_signal_unsubscribe(bus_, hosts_);
    item_.reset();
    menu_.reset();
    bus_ = nullptr;
  }
  isRegistered_ = false;
  setShown(false);
}

void DesktopTrayItem::watcherAppeared(GDBusConnection* /*bus*/, const char* /*name*/,
                                      const char* /*owner*/, gpointer self) {
  static_cast<DesktopTrayItem*>(self)->registerWithWatcher();
}

void DesktopTrayItem::watcherVanished(GDBusConnection* /*bus*/, const char* /*name*/,
                                      gpointer self) {
  auto& item = *static_cast<DesktopTrayItem*>(self);
  ++item.watchers_;
  item.isRegistered_ = false;
  item.setShown(false);
}

void DesktopTrayItem::registerWithWatcher() {
  const auto registered = [this, watcher = ++watchers_](GVariant* answer) {
    if (watcher != watchers_) return;
    isRegistered_ = answer != nullptr;
    if (isRegistered_) askForHost();
  };
  callOnBus(bus_,
            {.service = kWatcher,
             .path = kWatcherPath,
             .interfaceName = kWatcher,
             .name = "RegisterStatusNotifierItem"},
            g_variant_new("(s)", g_dbus_connection_get_unique_name(bus_)), cancellable_.get(),
            registered);
}

void DesktopTrayItem::hostsChanged(GDBusConnection* /*bus*/, const char* /*sender*/,
                                   const char* /*path*/, const char* /*interfaceName*/,
                                   const char* signal, GVariant* /*arguments*/, gpointer self) {
  if (std::string_view(signal).starts_with("StatusNotifierHost"))
    static_cast<DesktopTrayItem*>(self)->askForHost();
}

void DesktopTrayItem::askForHost() {
  if (!isRegistered_) return;
  const auto answered = [this, watcher = watchers_](GVariant* answer) {
    if (watcher != watchers_ || !isRegistered_) return;
    // A watcher that cannot say so is most likely a bar itself.
    GVariant* inner = nullptr;
    if (answer != nullptr) g_variant_get(answer, "(v)", &inner);
    const GLibPointer<GVariant> value(inner);
    setShown(!value || !g_variant_is_of_type(value.get(), G_VARIANT_TYPE_BOOLEAN) ||
             g_variant_get_boolean(value.get()) != FALSE);
  };
  callOnBus(bus_,
            {.service = kWatcher,
             .path = kWatcherPath,
             .interfaceName = "org.freedesktop.DBus.Properties",
             .name = "Get"},
            g_variant_new("(ss)", kWatcher, "IsStatusNotifierHostRegistered"), cancellable_.get(),
            answered);
}

void DesktopTrayItem::setShown(bool isShown) {
  if (hasSaidSo_ && isShown == isShown_) return;
  hasSaidSo_ = true;
  isShown_ = isShown;
  if (events_.shownChanged) events_.shownChanged(isShown);
}

void DesktopTrayItem::chosen(std::size_t entry, std::uint32_t time) {
  auto activation = activationOf(std::exchange(token_, {}), time);
  events_.chosen(entry, std::move(activation));
}

}  // namespace zelnor::platform
