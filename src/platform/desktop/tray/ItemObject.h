#pragma once

#include <functional>
#include <string>

#include "platform/TrayItem.h"
#include "platform/desktop/BusObject.h"

namespace zelnor::platform {

/// What a bar asks of an item: org.kde.StatusNotifierItem. It never changes.
class ItemObject {
 public:
  struct Events {
    std::function<bool(int x, int y)> menuRequested;
    /// The token of xdg-activation for what the user is about to do.
    std::function<void(std::string token)> tokenProvided;
  };

  /// `description` outlives the object.
  ItemObject(GDBusConnection* bus, const TrayItem::Description& description, Events events);

 private:
  BusObject object_;
};

}  // namespace zelnor::platform
