#include "platform/desktop/LaunchContext.h"

namespace zelnor::platform {

namespace {

constexpr const char* kToken = "zelnor-activation";

char* startupId(GAppLaunchContext* context, GAppInfo* /*program*/, GList* /*files*/) {
  return g_strdup(
      static_cast<const char*>(g_object_get_data(reinterpret_cast<GObject*>(context), kToken)));
}

/// GIO asks a subclass for the startup id, which it sends along when it starts a program over
/// D-Bus.
void initializeClass(gpointer itsClass, gpointer /*data*/) {
  static_cast<GAppLaunchContextClass*>(itsClass)->get_startup_notify_id = startupId;
}

GType contextType() {
  static const GType type = g_type_register_static_simple(
      G_TYPE_APP_LAUNCH_CONTEXT, "ZelnorLaunchContext", sizeof(GAppLaunchContextClass),
      initializeClass, sizeof(GAppLaunchContext), /*instance_init=*/nullptr, GTypeFlags{});
  return type;
}

}  // namespace

GObjectPointer<GAppLaunchContext> launchContext(const Activation& activation) {
  GObjectPointer<GAppLaunchContext> context(
      static_cast<GAppLaunchContext*>(g_object_new(contextType(), nullptr)));
  for (const auto* variable : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"}) {
    // What is in our own environment was meant for our own start.
    g_app_launch_context_unsetenv(context.get(), variable);
    if (activation.token.empty()) continue;
    g_app_launch_context_setenv(context.get(), variable, activation.token.c_str());
  }
  if (!activation.token.empty()) {
    g_object_set_data_full(reinterpret_cast<GObject*>(context.get()), kToken,
                           g_strdup(activation.token.c_str()), g_free);
  }
  return context;
}

}  // namespace zelnor::platform
