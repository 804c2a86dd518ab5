#include "platform/desktop/hotkey/WorkerContext.h"

#include "platform/desktop/hotkey/BusConnection.h"

namespace zelnor::platform {

WorkerContext::WorkerContext()
    : context_(g_main_context_new()), cancellable_(g_cancellable_new()) {}

WorkerContext::~WorkerContext() { g_main_context_unref(context_); }

void WorkerContext::runWith(const std::function<void()>& work) {
  g_main_context_push_thread_default(context_);
  work();
  g_main_context_pop_thread_default(context_);
}

void WorkerContext::waitFor(const std::function<bool()>& condition) {
  while (!condition()) {
    if (g_cancellable_is_cancelled(cancellable_.get()) != FALSE) throw Cancelled();
    g_main_context_iteration(context_, /*may_block=*/TRUE);
  }
}

void WorkerContext::waitFor(std::chrono::milliseconds time) {
  bool isOver = false;
  GSource* timer = g_timeout_source_new(static_cast<guint>(time.count()));
  const auto expire = [](gpointer over) -> gboolean {
    *static_cast<bool*>(over) = true;
    return G_SOURCE_REMOVE;
  };
  g_source_set_callback(timer, expire, &isOver, /*notify=*/nullptr);
  g_source_attach(timer, context_);
  const std::unique_ptr<GSource, void (*)(GSource*)> guard(timer, [](GSource* source) {
    g_source_destroy(source);
    g_source_unref(source);
  });
  waitFor([&] { return isOver; });
}

void WorkerContext::cancel() {
  g_cancellable_cancel(cancellable_.get());
  g_main_context_wakeup(context_);
}

}  // namespace zelnor::platform
