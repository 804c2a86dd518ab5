#include "platform/desktop/BusObject.h"

#include <utility>

namespace zelnor::platform {

namespace {

struct NodeInfoDeleter {
  void operator()(GDBusNodeInfo* info) const { g_dbus_node_info_unref(info); }
};

}  // namespace

BusObject::BusObject(GDBusConnection* bus, const char* path, Description description)
    : bus_(bus), description_(std::move(description)) {
  static constexpr GDBusInterfaceVTable kTable{
      .method_call = called, .get_property = read, .set_property = nullptr, .padding = {}};
  GLibError error;
  const std::unique_ptr<GDBusNodeInfo, NodeInfoDeleter> info(
      g_dbus_node_info_new_for_xml(description_.introspection, error.out()));
  if (!info) throw error.toFileError();
  registration_ = g_dbus_connection_register_object(bus, path, info->interfaces[0], &kTable, this,
                                                    /*user_data_free_func=*/nullptr, error.out());
  if (registration_ == 0) throw error.toFileError();
}

BusObject::~BusObject() { g_dbus_connection_unregister_object(bus_, registration_); }

void BusObject::called(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                       const char* /*interfaceName*/, const char* method, GVariant* arguments,
                       GDBusMethodInvocation* invocation, gpointer self) {
  // A copy, because the call may end with this object.
  const auto& methods = static_cast<BusObject*>(self)->description_.methods;
  const auto found = methods.find(method);
  const Method function = found == methods.end() ? nullptr : found->second;
  auto* const answer = function ? function(arguments) : nullptr;
  if (answer != nullptr) {
    g_dbus_method_invocation_return_value(invocation, answer);
  } else {
    g_dbus_method_invocation_return_error_literal(invocation, G_DBUS_ERROR,
                                                  G_DBUS_ERROR_UNKNOWN_METHOD, "not done here");
  }
}

GVariant* BusObject::read(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                          const char* /*interfaceName*/, const char* property, GError** error,
                          gpointer self) {
  const auto& properties = static_cast<BusObject*>(self)->description_.properties;
  const auto found = properties.find(property);
  if (found != properties.end()) return found->second();
  g_set_error_literal(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_PROPERTY, "no such property");
  return nullptr;
}

}  // namespace zelnor::platform
