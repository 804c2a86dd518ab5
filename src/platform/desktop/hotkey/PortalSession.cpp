#include "platform/desktop/hotkey/PortalSession.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace zelnor::platform {

namespace {

constexpr const char* kPortal = "org.freedesktop.portal.Desktop";
constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
constexpr const char* kShortcuts = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* kDescription = "打开 Zelnor 搜索";

BusConnection::Method shortcutsMethod(const char* name) {
  return {.service = kPortal, .path = kPortalPath, .interface = kShortcuts, .name = name};
}

/// The value `key` of a dictionary, as text; empty if there is no such text.
std::string textAt(GVariant* dictionary, const char* key) {
  const GLibPointer<GVariant> value(
      g_variant_lookup_value(dictionary, key, /*expected_type=*/nullptr));
  const bool isText =
      value && (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING) != FALSE ||
                g_variant_is_of_type(value.get(), G_VARIANT_TYPE_OBJECT_PATH) != FALSE);
  return isText ? g_variant_get_string(value.get(), /*length=*/nullptr) : std::string();
}

/// A dictionary whose values are texts.
GVariant* options(std::initializer_list<std::pair<const char*, std::string>> entries) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
  for (const auto& [key, text] : entries) {
    g_variant_builder_add(&builder, "{sv}", key, g_variant_new_string(text.c_str()));
  }
  return g_variant_builder_end(&builder);
}

GVariant* listOf(const PortalShortcut& shortcut) {
  GVariantBuilder shortcuts;
  g_variant_builder_init(&shortcuts, G_VARIANT_TYPE("a(sa{sv})"));
  g_variant_builder_add(
      &shortcuts, "(s@a{sv})", shortcut.id.c_str(),
      options({{"description", kDescription}, {"preferred_trigger", shortcut.trigger}}));
  return g_variant_builder_end(&shortcuts);
}

}  // namespace

PortalSession::PortalSession(WorkerContext& worker, const PortalShortcut& shortcut,
                             Activated activated)
    : worker_(worker), bus_(worker.cancellable()) {
  bus_.call({.service = kPortal,
             .path = kPortalPath,
             .interface = "org.freedesktop.DBus.Properties",
             .name = "Get"},
            g_variant_new("(ss)", kShortcuts, "version"));
  watchPortal();
  createSession(shortcut);
  watchSession(shortcut.id, std::move(activated));
  if (!isListed(shortcut)) bind(shortcut);
}

void PortalSession::serve() {
  worker_.waitFor([this] { return isLost(); });
}

void PortalSession::watchPortal() {
  bus_.subscribe({.service = "org.freedesktop.DBus",
                  .path = "/org/freedesktop/DBus",
                  .interface = "org.freedesktop.DBus",
                  .name = "NameOwnerChanged"},
                 kPortal, [this](GVariant* arguments) {
                   const char* before = nullptr;
                   g_variant_get(arguments, "(&s&s&s)", nullptr, &before, nullptr);
                   if (*before != '\0') isLost_ = true;
                 });
}

void PortalSession::createSession(const PortalShortcut& shortcut) {
  const auto response = request("CreateSession", [&](const std::string& token) {
    GVariantDict dictionary;
    // KDE knows a program without an application id by the name of its session.
    g_variant_dict_init(&dictionary,
                        options({{"handle_token", token}, {"session_handle_token", "zelnor"}}));
    // KDE of 2023 (Plasma 5.27) binds what comes with the session. Asked to bind it later, it only
    // opens its settings.
    g_variant_dict_insert_value(&dictionary, "shortcuts", listOf(shortcut));
    return g_variant_new("(@a{sv})", g_variant_dict_end(&dictionary));
  });
  session_ = textAt(response.results.get(), "session_handle");
  if (g_variant_is_object_path(session_.c_str()) == FALSE) {
    throw BusError("no session");
  }
}

void PortalSession::watchSession(const std::string& id, Activated activated) {
  bus_.subscribe({.service = kPortal,
                  .path = session_.c_str(),
                  .interface = "org.freedesktop.portal.Session",
                  .name = "Closed"},
                 /*argument=*/nullptr, [this](GVariant* /*arguments*/) { isLost_ = true; });
  bus_.subscribe(shortcutsMethod("Activated"), /*argument=*/nullptr,
                 [session = session_, id, activated = std::move(activated)](GVariant* arguments) {
                   if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(osta{sv})")) == FALSE)
                     return;
                   const char* where = nullptr;
                   const char* which = nullptr;
                   GVariant* given = nullptr;
                   g_variant_get(arguments, "(&o&st@a{sv})", &where, &which, nullptr, &given);
                   const GLibPointer<GVariant> details(given);
                   if (where == session && which == id) {
                     activated(textAt(details.get(), "activation_token"));
                   }
                 });
}

bool PortalSession::isListed(const PortalShortcut& shortcut) {
  try {
    const auto response = request("ListShortcuts", [&](const std::string& token) {
      return g_variant_new("(o@a{sv})", session_.c_str(), options({{"handle_token", token}}));
    });
    const GLibPointer<GVariant> list(
        g_variant_lookup_value(response.results.get(), "shortcuts", G_VARIANT_TYPE("a(sa{sv})")));
    if (!list) return false;
    for (gsize at = 0; at < g_variant_n_children(list.get()); ++at) {
      const char* id = nullptr;
      g_variant_get_child(list.get(), at, "(&s@a{sv})", &id, nullptr);
      if (id == shortcut.id) return true;
    }
  } catch (const BusError&) {      // NOLINT(bugprone-empty-catch): then it is not
  } catch (const PortalDenial&) {  // NOLINT(bugprone-empty-catch)
  }
  return false;
}

void PortalSession::bind(const PortalShortcut& shortcut) {
  request("BindShortcuts", [&](const std::string& token) {
    return g_variant_new("(o@a(sa{sv})s@a{sv})", session_.c_str(), listOf(shortcut),
                         /*parent_window=*/"", options({{"handle_token", token}}));
  });
}

PortalSession::Response PortalSession::request(
    const char* method, const std::function<GVariant*(const std::string& token)>& arguments) {
  const auto token = "zelnor" + std::to_string(++requests_);
  auto sender = bus_.uniqueName().substr(1);
  std::ranges::replace(sender, '.', '_');
  const auto object = std::string(kPortalPath) + "/request/" + sender + '/' + token;
  // Shared with the handler, which lives as long as the connection.
  const auto response = std::make_shared<Response>();
  bus_.subscribe({.service = kPortal,
                  .path = object.c_str(),
                  .interface = "org.freedesktop.portal.Request",
                  .name = "Response"},
                 /*argument=*/nullptr, [response](GVariant* answer) {
                   if (g_variant_is_of_type(answer, G_VARIANT_TYPE("(ua{sv})")) == FALSE) return;
                   GVariant* results = nullptr;
                   g_variant_get(answer, "(u@a{sv})", &response->code, &results);
                   response->results.reset(results);
                 });
  bus_.call(shortcutsMethod(method), arguments(token));
  worker_.waitFor([&] { return response->results || isLost(); });
  if (!response->results) throw BusError("the portal went away");
  if (response->code != 0) throw PortalDenial();
  return std::move(*response);
}

}  // namespace zelnor::platform
