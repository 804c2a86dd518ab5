#pragma once

#include <functional>
#include <string>

#include "platform/desktop/hotkey/BusConnection.h"
#include "platform/desktop/hotkey/WorkerContext.h"

namespace zelnor::platform {

/// A shortcut as the portal wants it.
struct PortalShortcut {
  /// The desktop keeps by it what the user chose for the shortcut, so another combination has
  /// another one.
  std::string id;
  std::string trigger;
};

/// The portal, or the user it asked, said no.
class PortalDenial final : public std::exception {};

/// A session of org.freedesktop.portal.GlobalShortcuts with one shortcut, from the connection to
/// the bus to its end. Everything waits and may throw BusError or Cancelled; one thread, in the
/// context given.
class PortalSession {
 public:
  using Activated = std::function<void(std::string token)>;

  /// Asks for the session and the shortcut; throws PortalDenial. The user may be asked, which takes
  /// as long as it takes. `worker` outlives the session.
  PortalSession(WorkerContext& worker, const PortalShortcut& shortcut, Activated activated);

  /// Hears the shortcut until the session is lost.
  void serve();

 private:
  struct Response {
    guint32 code = 0;
    GLibPointer<GVariant> results;
  };

  void watchPortal();
  void createSession(const PortalShortcut& shortcut);
  void watchSession(const std::string& id, Activated activated);
  /// Whether the session already has it.
  bool isListed(const PortalShortcut& shortcut);
  void bind(const PortalShortcut& shortcut);
  /// Calls a method whose answer comes later, as a signal of an object of its own. `arguments` is
  /// made for the name of that object.
  Response request(const char* method,
                   const std::function<GVariant*(const std::string& token)>& arguments);
  [[nodiscard]] bool isLost() const { return isLost_ || bus_.isClosed(); }

  WorkerContext& worker_;
  BusConnection bus_;
  std::string session_;  ///< its object path
  int requests_ = 0;
  bool isLost_ = false;
};

}  // namespace zelnor::platform
