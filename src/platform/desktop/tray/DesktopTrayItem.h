#pragma once

#include <memory>
#include <string>

#include "platform/TrayItem.h"
#include "platform/desktop/BusSession.h"
#include "platform/desktop/tray/ItemObject.h"
#include "platform/desktop/tray/MenuObject.h"

namespace zelnor::platform {

/// A status notifier item (org.kde.StatusNotifierItem) on a connection of its own. It registers
/// with each watcher that appears, so it comes late where the bar does, and back with it. The
/// thread's GLib loop has to run; nothing waits for the bus.
class DesktopTrayItem final : public TrayItem {
 public:
  explicit DesktopTrayItem(std::string busAddress = sessionBusAddress());
  ~DesktopTrayItem() override;
  DesktopTrayItem(const DesktopTrayItem&) = delete;
  DesktopTrayItem& operator=(const DesktopTrayItem&) = delete;

  void show(Description description, Events events) override;

 private:
  static void iconLookedUp(GObject* source, GAsyncResult* result, gpointer self);
  static void watcherAppeared(GDBusConnection* bus, const char* name, const char* owner,
                              gpointer self);
  static void watcherVanished(GDBusConnection* bus, const char* name, gpointer self);
  static void hostsChanged(GDBusConnection* bus, const char* sender, const char* path,
                           const char* interfaceName, const char* signal, GVariant* arguments,
                           gpointer self);

  void connected(GDBusConnection* bus);
  void lost();
  void registerWithWatcher();
  void askForHost();
  void setShown(bool isShown);
  void chosen(std::size_t entry, std::uint32_t time);

  const GObjectPointer<GCancellable> cancellable_;
  Description description_;
  Events events_;
  BusSession session_;
  GDBusConnection* bus_ = nullptr;  ///< the session's; null while there is none
  std::unique_ptr<ItemObject> item_;
  std::unique_ptr<MenuObject> menu_;
  guint watch_ = 0;
  guint hosts_ = 0;
  unsigned watchers_ = 0;  ///< how many came, so that late answers of earlier ones are known
  bool isRegistered_ = false;
  bool hasSaidSo_ = false;
  bool isShown_ = false;
  std::string token_;  ///< for the next thing that the user does
};

}  // namespace zelnor::platform
