#include "tests/platform_hotkey/FakePortal.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace zelnor::test {

using platform::GLibPointer;

namespace {

constexpr const char* kName = "org.freedesktop.portal.Desktop";
constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kShortcuts = "org.freedesktop.portal.GlobalShortcuts";

constexpr const char* kDescription = R"xml(<node>
  <interface name="org.freedesktop.portal.GlobalShortcuts">
    <method name="CreateSession">
      <arg type="a{sv}" direction="in"/><arg type="o" direction="out"/>
    </method>
    <method name="BindShortcuts">
      <arg type="o" direction="in"/><arg type="a(sa{sv})" direction="in"/>
      <arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
      <arg type="o" direction="out"/>
    </method>
    <method name="ListShortcuts">
      <arg type="o" direction="in"/><arg type="a{sv}" direction="in"/>
      <arg type="o" direction="out"/>
    </method>
    <property name="version" type="u" access="read"/>
  </interface>
</node>)xml";

constexpr const char* kBusConfiguration = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
  </policy>
</busconfig>)";

std::string textAt(GVariant* dictionary, const char* key) {
  const char* text = "";
  g_variant_lookup(dictionary, key, "&s", &text);
  return text;
}

/// The objects of a client's have its name in their paths.
std::string objectOf(std::string client, const std::string& kind, const std::string& token) {
  std::ranges::replace(client, '.', '_');
  return std::string(kPath) + '/' + kind + '/' + client.substr(1) + '/' + token;
}

GLibPointer<GVariant> childOf(GVariant* value, gsize index) {
  return GLibPointer<GVariant>(g_variant_get_child_value(value, index));
}

GVariant* emptyDictionary() { return g_variant_new("a{sv}", nullptr); }

platform::GObjectPointer<GDBusConnection> connect() {
  constexpr auto kFlags =
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  return platform::GObjectPointer<GDBusConnection>(g_dbus_connection_new_for_address_sync(
      std::getenv("DBUS_SESSION_BUS_ADDRESS"), kFlags, /*observer=*/nullptr,
      /*cancellable=*/nullptr, /*error=*/nullptr));
}

GLibPointer<GVariant> askBus(GDBusConnection* bus, const char* method, GVariant* arguments) {
  GLibPointer<GVariant> answer(g_dbus_connection_call_sync(
      bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
      arguments, /*reply_type=*/nullptr, G_DBUS_CALL_FLAGS_NONE, /*timeout_msec=*/-1,
      /*cancellable=*/nullptr, /*error=*/nullptr));
  if (!answer) throw std::runtime_error(method);
  return answer;
}

}  // namespace

PrivateBus::PrivateBus()
    : daemon_({"dbus-daemon", "--nofork", "--print-address=1",
               "--config-file=" + folder_.file("bus.conf", kBusConfiguration)}) {
  setenv("DBUS_SESSION_BUS_ADDRESS", daemon_.firstLine().c_str(), /*overwrite=*/1);
}

PrivateBus::~PrivateBus() {
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", /*overwrite=*/1);
}

const GDBusInterfaceVTable FakePortal::kTable{
    .method_call =
        [](GDBusConnection* /*bus*/, const char* sender, const char* /*path*/,
           const char* /*interface*/, const char* method, GVariant* arguments,
           GDBusMethodInvocation* invocation, gpointer self) {
          static_cast<FakePortal*>(self)->onCall(sender, method, arguments, invocation);
        },
    .get_property = [](GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                       const char* /*interface*/, const char* /*property*/, GError** /*error*/,
                       gpointer /*self*/) { return g_variant_new_uint32(1); },
    .set_property = nullptr,
    .padding = {}};

FakePortal::FakePortal(Answer answer, Binds binds) : answer_(answer), binds_(binds) {
  std::promise<void> ready;
  thread_ = std::thread([&] {
    g_main_context_push_thread_default(context_);
    bus_ = connect();
    auto* const node = g_dbus_node_info_new_for_xml(kDescription, /*error=*/nullptr);
    g_dbus_connection_register_object(bus_.get(), kPath, node->interfaces[0], &kTable, this,
                                      /*user_data_free_func=*/nullptr, /*error=*/nullptr);
    g_dbus_node_info_unref(node);
    askBus(bus_.get(), "RequestName", g_variant_new("(su)", kName, /*flags*/ 0U));
    ready.set_value();
    g_main_loop_run(loop_);
    g_dbus_connection_close_sync(bus_.get(), /*cancellable=*/nullptr, /*error=*/nullptr);
    bus_.reset();
    g_main_context_pop_thread_default(context_);
  });
  ready.get_future().wait();
}

FakePortal::~FakePortal() {
  runInThread([this] { g_main_loop_quit(loop_); });
  thread_.join();
  g_main_loop_unref(loop_);
  g_main_context_unref(context_);
}

void FakePortal::runInThread(const std::function<void()>& work) {
  std::packaged_task<void()> task(work);
  auto done = task.get_future();
  {
    // Handed over under a lock of ours, because the thread sanitizer does not see GLib's.
    const std::scoped_lock lock(mutex_);
    work_ = std::move(task);
  }
  const auto run = [](gpointer self) -> gboolean {
    static_cast<FakePortal*>(self)->runWork();
    return G_SOURCE_REMOVE;
  };
  g_main_context_invoke(context_, run, this);
  done.wait();
}

void FakePortal::runWork() {
  std::unique_lock lock(mutex_);
  auto work = std::move(work_);
  lock.unlock();
  work();
}

void FakePortal::onCall(const std::string& sender, const std::string& method, GVariant* arguments,
                        GDBusMethodInvocation* invocation) {
  const auto options = childOf(arguments, g_variant_n_children(arguments) - 1);
  const auto request = objectOf(sender, "request", textAt(options.get(), "handle_token"));
  g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", request.c_str()));
  if (method == "CreateSession") {
    const auto session = objectOf(sender, "session", textAt(options.get(), "session_handle_token"));
    const GLibPointer<GVariant> shortcuts(
        g_variant_lookup_value(options.get(), "shortcuts", G_VARIANT_TYPE("a(sa{sv})")));
    if (binds_ == Binds::withTheSession) note(sender, method, session, shortcuts.get());
    respond(sender, options.get(),
            g_variant_new_parsed("{'session_handle': <%s>}", session.c_str()), /*code=*/0);
  } else if (method == "ListShortcuts") {
    respond(sender, options.get(), sessionShortcuts(), /*code=*/0);
  } else {
    // Heard of by the test only when the answer is on its way.
    if (answer_) respond(sender, options.get(), emptyDictionary(), *answer_);
    note(sender, method, g_variant_get_string(childOf(arguments, 0).get(), /*length=*/nullptr),
         childOf(arguments, 1).get());
  }
}

void FakePortal::note(const std::string& sender, const std::string& method,
                      const std::string& session, GVariant* shortcuts) {
  const auto shortcut = childOf(shortcuts, 0);
  const auto details = childOf(shortcut.get(), 1);
  const std::scoped_lock lock(mutex_);
  bindings_.push_back({.method = method,
                       .id = g_variant_get_string(childOf(shortcut.get(), 0).get(), nullptr),
                       .description = textAt(details.get(), "description"),
                       .trigger = textAt(details.get(), "preferred_trigger"),
                       .client = sender,
                       .session = session});
}

GVariant* FakePortal::sessionShortcuts() {
  if (binds_ == Binds::whenAsked) return g_variant_new_parsed("{'shortcuts': <@a(sa{sv}) []>}");
  const std::scoped_lock lock(mutex_);
  return g_variant_new_parsed("{'shortcuts': <[(%s, @a{sv} {})]>}", bindings_.back().id.c_str());
}

void FakePortal::respond(const std::string& sender, GVariant* options, GVariant* results,
                         guint32 code) {
  emit(sender.c_str(), objectOf(sender, "request", textAt(options, "handle_token")),
       "org.freedesktop.portal.Request", "Response", g_variant_new("(u@a{sv})", code, results));
}

void FakePortal::emit(const char* client, const std::string& path, const char* interface,
                      const char* name, GVariant* arguments) {
  g_dbus_connection_emit_signal(bus_.get(), client, path.c_str(), interface, name, arguments,
                                /*error=*/nullptr);
}

std::vector<FakePortal::Binding> FakePortal::bindings() {
  const std::scoped_lock lock(mutex_);
  return bindings_;
}

bool FakePortal::isConnected(const Binding& binding) {
  gboolean has = FALSE;
  runInThread([&] {
    const auto answer =
        askBus(bus_.get(), "NameHasOwner", g_variant_new("(s)", binding.client.c_str()));
    g_variant_get(answer.get(), "(b)", &has);
  });
  return has != FALSE;
}

void FakePortal::activate(const Binding& binding, const std::string& id, const std::string& token) {
  runInThread([&] {
    auto* const details = token.empty()
                              ? emptyDictionary()
                              : g_variant_new_parsed("{'activation_token': <%s>}", token.c_str());
    emit(binding.client.c_str(), kPath, kShortcuts, "Activated",
         g_variant_new("(ost@a{sv})", binding.session.c_str(), id.c_str(),
                       /*timestamp*/ guint64{1}, details));
  });
}

void FakePortal::closeSession(const Binding& binding) {
  runInThread([&] {
    emit(binding.client.c_str(), binding.session, "org.freedesktop.portal.Session", "Closed",
         g_variant_new("()"));
  });
}

}  // namespace zelnor::test
