#include "platform/desktop/SessionApplication.h"

#include <chrono>
#include <optional>
#include <utility>

#include <QEventLoop>
#include <QTimer>

namespace zelnor::platform {

namespace {

constexpr const char* kName = "org.zelnor.Zelnor";
constexpr const char* kPath = "/org/zelnor/Zelnor";
constexpr const char* kInterface = "org.freedesktop.Application";
constexpr const char* kIntrospection = R"(<node><interface name="org.freedesktop.Application">
  <method name="Activate"><arg type="a{sv}" direction="in"/></method>
  <method name="Open"><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/></method>
  <method name="ActivateAction"><arg type="s" direction="in"/><arg type="av" direction="in"/>
    <arg type="a{sv}" direction="in"/></method>
</interface></node>)";
constexpr BusMethod kRequestName{.service = "org.freedesktop.DBus",
                                 .path = "/org/freedesktop/DBus",
                                 .interfaceName = "org.freedesktop.DBus",
                                 .name = "RequestName"};
/// How long a start waits for the bus, or for the process that was started before.
constexpr std::chrono::milliseconds kPatience{2000};

// Of the interface of the bus itself.
constexpr std::uint32_t kDoNotQueue = 4;
constexpr std::uint32_t kPrimaryOwner = 1;
constexpr std::uint32_t kAlreadyOwner = 4;

/// Handles events until `ready` is called, which `begin` is given, or the patience is at its end.
template <class Value>
std::optional<Value> wait(const std::function<void(std::function<void(Value)>)>& begin) {
  QEventLoop untilReady;
  std::optional<Value> result;
  QTimer::singleShot(kPatience, &untilReady, &QEventLoop::quit);
  begin([&](Value value) {
    result = std::move(value);
    untilReady.quit();
  });
  if (!result) untilReady.exec();
  return result;
}

GVariant* platformData(const Activation& activation) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
  for (const auto* key : {"activation-token", "desktop-startup-id"}) {
    if (activation.token.empty()) continue;
    g_variant_builder_add(&builder, "{sv}", key, g_variant_new_string(activation.token.c_str()));
  }
  return g_variant_builder_end(&builder);
}

/// In the last of the arguments.
Activation activationIn(GVariant* arguments) {
  const GLibPointer<GVariant> data(
      g_variant_get_child_value(arguments, g_variant_n_children(arguments) - 1));
  for (const auto* key : {"activation-token", "desktop-startup-id"}) {
    const char* token = nullptr;
    if (g_variant_lookup(data.get(), key, "&s", &token) != FALSE) return {token};
  }
  return {};
}

std::string actionIn(GVariant* arguments) {
  const char* action = nullptr;
  g_variant_get_child(arguments, /*index_=*/0, "&s", &action);
  return action;
}

bool givesName(GVariant* answer) {
  std::uint32_t code = 0;
  g_variant_get(answer, "(u)", &code);
  return code == kPrimaryOwner || code == kAlreadyOwner;
}

}  // namespace

SessionApplication::SessionApplication(std::string busAddress, Told told)
    : cancellable_(g_cancellable_new()),
      told_(std::move(told)),
      session_(std::move(busAddress),
               {.connected = [this](auto* bus) { connected(bus); }, .lost = [this] { lost(); }}) {}

SessionApplication::~SessionApplication() { g_cancellable_cancel(cancellable_.get()); }

SessionApplication::Standing SessionApplication::claim() {
  const auto begin = [this](auto ready) {
    settled_ = std::move(ready);
    session_.start();
  };
  const auto standing = wait<Standing>(begin);
  settled_ = {};
  return standing.value_or(Standing::noBus);
}

void SessionApplication::settle(Standing standing) {
  if (const auto settled = std::exchange(settled_, {})) settled(standing);
}

/// The object before the name, so that whoever finds the name finds the object.
void SessionApplication::connected(GDBusConnection* bus) {
  bus_ = bus;
  const auto tell = [this](const std::string& action, GVariant* arguments) {
    told_(action, activationIn(arguments));
    return BusObject::nothing();
  };
  // Files are not opened: to show the program is the best answer.
  const auto show = [tell](GVariant* arguments) { return tell({}, arguments); };
  object_ = std::make_unique<BusObject>(
      bus, kPath,
      BusObject::Description{.introspection = kIntrospection,
                             .methods = {{"Activate", show},
                                         {"Open", show},
                                         {"ActivateAction",
                                          [tell](GVariant* arguments) {
                                            return tell(actionIn(arguments), arguments);
                                          }}},
                             .properties = {}});
  // One that was first before the bus went away is so again, as soon as nobody else is.
  const std::uint32_t flags = settled_ ? kDoNotQueue : 0;
  callOnBus(bus, kRequestName, g_variant_new("(su)", kName, flags), cancellable_.get(),
            [this](GVariant* answer) {
              if (answer == nullptr) return settle(Standing::noBus);
              settle(givesName(answer) ? Standing::first : Standing::second);
            });
}

void SessionApplication::lost() {
  object_.reset();
  bus_ = nullptr;
  settle(Standing::noBus);
}

bool SessionApplication::forward(const std::string& action, const Activation& activation) {
  if (bus_ == nullptr) return false;
  auto* data = platformData(activation);
  auto* arguments =
      action.empty() ? g_variant_new("(@a{sv})", data)
                     : g_variant_new("(s@av@a{sv})", action.c_str(),
                                     g_variant_new_array(G_VARIANT_TYPE_VARIANT, nullptr, 0), data);
  const BusMethod method{.service = kName,
                         .path = kPath,
                         .interfaceName = kInterface,
                         .name = action.empty() ? "Activate" : "ActivateAction"};
  const GObjectPointer<GCancellable> cancellable(g_cancellable_new());
  const auto begin = [&](const std::function<void(bool)>& ready) {
    callOnBus(bus_, method, arguments, cancellable.get(),
              [ready](GVariant* answer) { ready(answer != nullptr); });
  };
  const auto isAnswered = wait<bool>(begin);
  g_cancellable_cancel(cancellable.get());
  return isAnswered.value_or(false);
}

}  // namespace zelnor::platform
