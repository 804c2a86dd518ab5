#include "platform/desktop/tray/ItemObject.h"

#include <utility>

#include "platform/desktop/tray/MenuObject.h"

namespace zelnor::platform {

namespace {

constexpr const char* kItemPath = "/StatusNotifierItem";

constexpr const char* kItemInterface = R"xml(<node><interface name="org.kde.StatusNotifierItem">
  <property name="Category" type="s" access="read"/>
  <property name="Id" type="s" access="read"/>
  <property name="Title" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="WindowId" type="i" access="read"/>
  <property name="IconThemePath" type="s" access="read"/>
  <property name="Menu" type="o" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/>
  <property name="IconName" type="s" access="read"/>
  <property name="IconPixmap" type="a(iiay)" access="read"/>
  <property name="OverlayIconName" type="s" access="read"/>
  <property name="OverlayIconPixmap" type="a(iiay)" access="read"/>
  <property name="AttentionIconName" type="s" access="read"/>
  <property name="AttentionIconPixmap" type="a(iiay)" access="read"/>
  <property name="AttentionMovieName" type="s" access="read"/>
  <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
  <method name="ContextMenu">
    <arg name="x" type="i" direction="in"/>
    <arg name="y" type="i" direction="in"/>
  </method>
  <method name="Activate">
    <arg name="x" type="i" direction="in"/>
    <arg name="y" type="i" direction="in"/>
  </method>
  <method name="SecondaryActivate">
    <arg name="x" type="i" direction="in"/>
    <arg name="y" type="i" direction="in"/>
  </method>
  <method name="Scroll">
    <arg name="delta" type="i" direction="in"/>
    <arg name="orientation" type="s" direction="in"/>
  </method>
  <method name="ProvideXdgActivationToken">
    <arg name="token" type="s" direction="in"/>
  </method>
  <signal name="NewTitle"/>
  <signal name="NewIcon"/>
  <signal name="NewAttentionIcon"/>
  <signal name="NewOverlayIcon"/>
  <signal name="NewToolTip"/>
  <signal name="NewStatus"><arg name="status" type="s"/></signal>
</interface></node>)xml";

BusObject::Property text(std::string value) {
  return [value = std::move(value)] { return g_variant_new_string(value.c_str()); };
}

/// The bytes of a pixel are in the order of the network, as `TrayItem::Picture` has them.
GVariant* pictures(const std::vector<TrayItem::Picture>& all) {
  GVariantBuilder array;
  g_variant_builder_init(&array, G_VARIANT_TYPE("a(iiay)"));
  for (const auto& picture : all) {
    g_variant_builder_add(&array, "(ii@ay)", picture.side, picture.side,
                          g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, picture.pixels.data(),
                                                    picture.pixels.size(), sizeof(char)));
  }
  return g_variant_builder_end(&array);
}

GVariant* noPictures() { return pictures({}); }

BusObject::Description describe(const TrayItem::Description& item, ItemObject::Events events) {
  const auto menu = [ask = std::move(events.menuRequested)](GVariant* arguments) {
    int x = 0;
    int y = 0;
    g_variant_get(arguments, "(ii)", &x, &y);
    return ask(x, y) ? BusObject::nothing() : nullptr;
  };
  const auto takeToken = [provide = std::move(events.tokenProvided)](GVariant* arguments) {
    const char* token = nullptr;
    g_variant_get(arguments, "(&s)", &token);
    provide(token);
    return BusObject::nothing();
  };
  const auto toolTip = [&item] {
    return g_variant_new("(s@a(iiay)ss)", "", noPictures(), item.toolTip.c_str(), "");
  };
  return {.introspection = kItemInterface,
          .methods = {{"ContextMenu", menu},
                      {"Activate", menu},
                      {"SecondaryActivate", [](GVariant*) { return BusObject::nothing(); }},
                      {"Scroll", [](GVariant*) { return BusObject::nothing(); }},
                      {"ProvideXdgActivationToken", takeToken}},
          .properties = {{"Category", text("ApplicationStatus")},
                         {"Id", text(item.id)},
                         {"Title", text(item.title)},
                         {"Status", text("Active")},
                         {"WindowId", [] { return g_variant_new_int32(0); }},
                         {"IconThemePath", text("")},
                         {"Menu", [] { return g_variant_new_object_path(MenuObject::kPath); }},
                         {"ItemIsMenu", [] { return g_variant_new_boolean(TRUE); }},
                         {"IconName", text(item.iconName)},
                         {"IconPixmap", [&item] { return pictures(item.pictures); }},
                         {"OverlayIconName", text("")},
                         {"OverlayIconPixmap", noPictures},
                         {"AttentionIconName", text("")},
                         {"AttentionIconPixmap", noPictures},
                         {"AttentionMovieName", text("")},
                         {"ToolTip", toolTip}}};
}

}  // namespace

ItemObject::ItemObject(GDBusConnection* bus, const TrayItem::Description& description,
                       Events events)
    : object_(bus, kItemPath, describe(description, std::move(events))) {}

}  // namespace zelnor::platform
