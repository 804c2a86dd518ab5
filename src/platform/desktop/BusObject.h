#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "platform/desktop/GLib.h"

namespace zelnor::platform {

/// An object of ours on a bus, which other programs call. Used on one thread, whose GLib loop
/// delivers the calls.
class BusObject {
 public:
  /// Answers a floating tuple, or null if it cannot do what is asked; the caller is told so.
  using Method = std::function<GVariant*(GVariant* arguments)>;
  /// Answers a floating value.
  using Property = std::function<GVariant*()>;

  struct Description {
    const char* introspection;  ///< XML, with one interface
    std::map<std::string, Method, std::less<>> methods;
    std::map<std::string, Property, std::less<>> properties;
  };

  /// Is on `bus` as `path` for as long as it lives. Throws FileError if `path` is taken.
  BusObject(GDBusConnection* bus, const char* path, Description description);
  ~BusObject();
  BusObject(const BusObject&) = delete;
  BusObject& operator=(const BusObject&) = delete;

  static GVariant* nothing() { return g_variant_new_tuple(nullptr, 0); }

 private:
  static void called(GDBusConnection* bus, const char* sender, const char* path,
                     const char* interfaceName, const char* method, GVariant* arguments,
                     GDBusMethodInvocation* invocation, gpointer self);
  static GVariant* read(GDBusConnection* bus, const char* sender, const char* path,
                        const char* interfaceName, const char* property, GError** error,
                        gpointer self);

  GDBusConnection* bus_;
  Description description_;
  guint registration_ = 0;
};

}  // namespace zelnor::platform
