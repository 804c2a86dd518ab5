#include "platform/desktop/tray/MenuObject.h"

#include <cstring>
#include <string>
#include <utility>

// An entry's id in the protocol is its index and one; 0 is the menu itself.

namespace zelnor::platform {

namespace {

constexpr const char* kMenuInterface = R"xml(<node><interface name="com.canonical.dbusmenu">
  <property name="Version" type="u" access="read"/>
  <property name="TextDirection" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="IconThemePath" type="as" access="read"/>
  <method name="GetLayout">
    <arg name="parentId" type="i" direction="in"/>
    <arg name="recursionDepth" type="i" direction="in"/>
    <arg name="propertyNames" type="as" direction="in"/>
    <arg name="revision" type="u" direction="out"/>
    <arg name="layout" type="(ia{sv}av)" direction="out"/>
  </method>
  <method name="GetGroupProperties">
    <arg name="ids" type="ai" direction="in"/>
    <arg name="propertyNames" type="as" direction="in"/>
    <arg name="properties" type="a(ia{sv})" direction="out"/>
  </method>
  <method name="GetProperty">
    <arg name="id" type="i" direction="in"/>
    <arg name="name" type="s" direction="in"/>
    <arg name="value" type="v" direction="out"/>
  </method>
  <method name="Event">
    <arg name="id" type="i" direction="in"/>
    <arg name="eventId" type="s" direction="in"/>
    <arg name="data" type="v" direction="in"/>
    <arg name="timestamp" type="u" direction="in"/>
  </method>
  <method name="EventGroup">
    <arg name="events" type="a(isvu)" direction="in"/>
    <arg name="idErrors" type="ai" direction="out"/>
  </method>
  <method name="AboutToShow">
    <arg name="id" type="i" direction="in"/>
    <arg name="needUpdate" type="b" direction="out"/>
  </method>
  <method name="AboutToShowGroup">
    <arg name="ids" type="ai" direction="in"/>
    <arg name="updatesNeeded" type="ai" direction="out"/>
    <arg name="idErrors" type="ai" direction="out"/>
  </method>
  <signal name="ItemsPropertiesUpdated">
    <arg name="updatedProps" type="a(ia{sv})"/>
    <arg name="removedProps" type="a(ias)"/>
  </signal>
  <signal name="LayoutUpdated">
    <arg name="revision" type="u"/>
    <arg name="parent" type="i"/>
  </signal>
  <signal name="ItemActivationRequested">
    <arg name="id" type="i"/>
    <arg name="timestamp" type="u"/>
  </signal>
</interface></node>)xml";

constexpr guint kVersion = 3;
constexpr guint kRevision = 1;

void add(GVariantBuilder& map, const char* key, GVariant* value) {
  g_variant_builder_add(&map, "{sv}", key, value);
}

GVariant* bytes(const std::string& content) {
  return g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, content.data(), content.size(),
                                   sizeof(char));
}

/// A single "_" would underline the letter behind it.
std::string label(const std::string& title) {
  std::string escaped;
  for (const char c : title) escaped += c == '_' ? "__" : std::string(1, c);
  return escaped;
}

GVariant* shortcuts(const std::vector<std::string>& keys) {
  GVariantBuilder one;
  g_variant_builder_init(&one, G_VARIANT_TYPE("as"));
  for (const auto& key : keys) g_variant_builder_add(&one, "s", key.c_str());
  GVariantBuilder all;
  g_variant_builder_init(&all, G_VARIANT_TYPE("aas"));
  g_variant_builder_add_value(&all, g_variant_builder_end(&one));
  return g_variant_builder_end(&all);
}

void addEntry(GVariantBuilder& map, const TrayItem::MenuEntry& entry) {
  if (entry.title.empty()) return add(map, "type", g_variant_new_string("separator"));
  add(map, "label", g_variant_new_string(label(entry.title).c_str()));
  if (!entry.png.empty()) add(map, "icon-data", bytes(entry.png));
  if (!entry.shortcut.empty()) add(map, "shortcut", shortcuts(entry.shortcut));
}

}  // namespace

MenuObject::MenuObject(GDBusConnection* bus, std::vector<TrayItem::MenuEntry> entries,
                       Chosen chosen)
    : entries_(std::move(entries)),
      chosen_(std::move(chosen)),
      object_(bus, kPath, description()) {}

BusObject::Description MenuObject::description() {
  return {
      .introspection = kMenuInterface,
      .methods = {{"GetLayout", [this](GVariant* a) { return layout(a); }},
                  {"GetGroupProperties", [this](GVariant* a) { return groupProperties(a); }},
                  {"GetProperty", [this](GVariant* a) { return property(a); }},
                  {"Event", [this](GVariant* a) { return event(a); }},
                  {"EventGroup", [this](GVariant* a) { return eventGroup(a); }},
                  {"AboutToShow", [](GVariant*) { return g_variant_new("(b)", FALSE); }},
                  {"AboutToShowGroup",
                   [](GVariant*) { return g_variant_new("(aiai)", nullptr, nullptr); }}},
      .properties = {{"Version", [] { return g_variant_new_uint32(kVersion); }},
                     {"TextDirection", [] { return g_variant_new_string("ltr"); }},
                     {"Status", [] { return g_variant_new_string("normal"); }},
                     {"IconThemePath", [] { return g_variant_new_strv(nullptr, /*length=*/0); }}}};
}

/// All of them, whichever were asked for: there are few.
GVariant* MenuObject::properties(int id) const {
  GVariantBuilder map;
  g_variant_builder_init(&map, G_VARIANT_TYPE_VARDICT);
  if (id == 0) {
    add(map, "children-display", g_variant_new_string("submenu"));
  } else if (id > 0 && static_cast<std::size_t>(id) <= entries_.size()) {
    addEntry(map, entries_[static_cast<std::size_t>(id) - 1]);
  }
  return g_variant_builder_end(&map);
}

GVariant* MenuObject::node(int id, bool withChildren) const {
  GVariantBuilder children;
  g_variant_builder_init(&children, G_VARIANT_TYPE("av"));
  if (id == 0 && withChildren) {
    for (int child = 1; child <= static_cast<int>(entries_.size()); ++child)
      g_variant_builder_add(&children, "v", node(child, /*withChildren=*/false));
  }
  return g_variant_new("(i@a{sv}av)", id, properties(id), &children);
}

GVariant* MenuObject::layout(GVariant* arguments) const {
  int parent = 0;
  int depth = 0;
  g_variant_get(arguments, "(iias)", &parent, &depth, nullptr);
  return g_variant_new("(u@(ia{sv}av))", kRevision, node(parent, /*withChildren=*/depth != 0));
}

GVariant* MenuObject::groupProperties(GVariant* arguments) const {
  GVariantBuilder groups;
  g_variant_builder_init(&groups, G_VARIANT_TYPE("a(ia{sv})"));
  GVariantIter* ids = nullptr;
  g_variant_get(arguments, "(aias)", &ids, nullptr);
  int id = 0;
  bool isAny = false;
  while (g_variant_iter_next(ids, "i", &id) != FALSE) {
    isAny = true;
    g_variant_builder_add(&groups, "(i@a{sv})", id, properties(id));
  }
  g_variant_iter_free(ids);
  for (id = 0; !isAny && id <= static_cast<int>(entries_.size()); ++id)
    g_variant_builder_add(&groups, "(i@a{sv})", id, properties(id));
  return g_variant_new("(a(ia{sv}))", &groups);
}

GVariant* MenuObject::property(GVariant* arguments) const {
  int id = 0;
  const char* name = nullptr;
  g_variant_get(arguments, "(i&s)", &id, &name);
  const GLibPointer<GVariant> all(g_variant_ref_sink(properties(id)));
  const GLibPointer<GVariant> value(
      g_variant_lookup_value(all.get(), name, /*expected_type=*/nullptr));
  return value ? g_variant_new("(v)", value.get()) : nullptr;
}

void MenuObject::happened(int id, const char* kind, std::uint32_t time) const {
  if (std::strcmp(kind, "clicked") != 0 || id <= 0) return;
  const auto entry = static_cast<std::size_t>(id) - 1;
  if (entry < entries_.size()) chosen_(entry, time);
}

GVariant* MenuObject::event(GVariant* arguments) const {
  int id = 0;
  const char* kind = nullptr;
  std::uint32_t time = 0;
  g_variant_get(arguments, "(i&svu)", &id, &kind, nullptr, &time);
  happened(id, kind, time);
  return BusObject::nothing();
}

GVariant* MenuObject::eventGroup(GVariant* arguments) const {
  GVariantIter* events = nullptr;
  g_variant_get(arguments, "(a(isvu))", &events);
  int id = 0;
  const char* kind = nullptr;
  std::uint32_t time = 0;
  while (g_variant_iter_next(events, "(i&svu)", &id, &kind, nullptr, &time) != FALSE)
    happened(id, kind, time);
  g_variant_iter_free(events);
  return g_variant_new("(ai)", nullptr);
}

}  // namespace zelnor::platform
