#pragma once

#include <functional>
#include <future>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/desktop/GLib.h"
#include "tests/platform_hotkey/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::test {

/// A session's bus of the test's own, on which nothing can be started.
class PrivateBus {
 public:
  /// Becomes the bus of this process.
  PrivateBus();
  /// There is none again.
  ~PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

 private:
  TemporaryFolder folder_;
  ChildProcess daemon_;
};

/// The GlobalShortcuts part of the desktop portal, on the session's bus, until it is destroyed. It
/// runs in a thread of its own; tests see what it was asked and make it act.
class FakePortal {
 public:
  struct Binding {
    std::string method;
    std::string id;
    std::string description;
    std::string trigger;
    std::string client;
    std::string session;
  };
  /// How it answers a request for shortcuts: with this code, or not at all.
  using Answer = std::optional<guint32>;

  /// When it binds: when it is asked to, or already with the session, as old ones do.
  enum class Binds { whenAsked, withTheSession };

  explicit FakePortal(Answer answer = 0, Binds binds = Binds::whenAsked);
  ~FakePortal();
  FakePortal(const FakePortal&) = delete;
  FakePortal& operator=(const FakePortal&) = delete;

  /// Every request for shortcuts so far, in order.
  std::vector<Binding> bindings();
  /// Whether the client of a binding is still on the bus.
  bool isConnected(const Binding& binding);
  /// The user presses a shortcut. An empty token is not sent.
  void activate(const Binding& binding, const std::string& id, const std::string& token);
  void closeSession(const Binding& binding);

 private:
  void runInThread(const std::function<void()>& work);
  void runWork();
  void onCall(const std::string& sender, const std::string& method, GVariant* arguments,
              GDBusMethodInvocation* invocation);
  void note(const std::string& sender, const std::string& method, const std::string& session,
            GVariant* shortcuts);
  GVariant* sessionShortcuts();
  void respond(const std::string& sender, GVariant* options, GVariant* results, guint32 code);
  void emit(const char* client, const std::string& path, const char* interface, const char* name,
            GVariant* arguments);

  static const GDBusInterfaceVTable kTable;

  const Answer answer_;
  const Binds binds_;
  GMainContext* context_ = g_main_context_new();
  GMainLoop* loop_ = g_main_loop_new(context_, /*is_running=*/FALSE);
  platform::GObjectPointer<GDBusConnection> bus_;
  std::mutex mutex_;
  std::vector<Binding> bindings_;
  std::packaged_task<void()> work_;
  std::thread thread_;
};

}  // namespace zelnor::test
