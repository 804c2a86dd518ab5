#include "platform/desktop/hotkey/GnomeHotkey.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "platform/desktop/hotkey/Combination.h"
#include "platform/desktop/hotkey/GnomeShortcut.h"
#include "platform/desktop/hotkey/WorkerContext.h"

namespace zelnor::platform {

namespace {

/// As GNOME splits it into arguments again.
std::string quoted(const std::string& program) {
  const GLibPointer<char> text(g_shell_quote(program.c_str()));
  return text.get();
}

}  // namespace

/// The thread of the settings, one job after the other. It shares the worker, because it may be
/// left behind with a service that does not answer.
class GnomeHotkey::Worker : public std::enable_shared_from_this<Worker> {
 public:
  struct Job {
    /// Answers the code if it is refused. The shortcut is null on a desktop without.
    std::function<std::optional<int>(GnomeShortcut*)> work;
    std::function<void(int code)> refused;
  };

  void start() {
    thread_ = std::thread([self = shared_from_this()] {
      WorkerContext().runWith([&] { self->run(); });
      const std::scoped_lock lock(self->mutex_);
      self->hasEnded_ = true;
      self->changed_.notify_all();
    });
  }

  void post(Job job) {
    const std::scoped_lock lock(mutex_);
    jobs_.push_back(std::move(job));
    changed_.notify_all();
  }

  /// What was posted is done first.
  void end(std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    isEnding_ = true;
    changed_.notify_all();
    const bool hasEnded = changed_.wait_for(lock, patience, [this] { return hasEnded_; });
    lock.unlock();
    if (hasEnded) {
      thread_.join();
    } else {
      thread_
          .detach();  // the program ends; its thread is stuck in a call that cannot be called off
    }
  }

 private:
  void run() {
    auto shortcut = GnomeShortcut::find();
    std::unique_lock lock(mutex_);
    while (true) {
      changed_.wait(lock, [this] { return isEnding_ || !jobs_.empty(); });
      if (jobs_.empty()) return;
      const auto job = std::move(jobs_.front());
      jobs_.pop_front();
      lock.unlock();
      const auto code = job.work(shortcut ? &*shortcut : nullptr);
      lock.lock();
      // The main thread's queue may not outlive the end.
      if (code && !isEnding_) job.refused(*code);
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Job> jobs_;
  bool isEnding_ = false;
  bool hasEnded_ = false;
  std::thread thread_;
};

GnomeHotkey::GnomeHotkey(tasks::Executor main, std::string program)
    : main_(std::move(main)), program_(std::move(program)) {}

GnomeHotkey::~GnomeHotkey() {
  release();
  if (worker_) worker_->end(kEndPatience);
}

void GnomeHotkey::grab(const HotkeyConfiguration& combination, Pressed pressed, Refused refused) {
  called_ = std::make_shared<MainThreadCallbacks::Called>(
      MainThreadCallbacks::Called{.pressed = std::move(pressed), .refused = std::move(refused)});
  if (!worker_) {
    worker_ = std::make_shared<Worker>();
    worker_->start();
  }
  worker_->post({.work = [combination, command = quoted(program_)](
                             GnomeShortcut* shortcut) -> std::optional<int> {
                   if (shortcut == nullptr) return kHotkeyUnavailable;
                   return shortcut->install(combination, command);
                 },
                 .refused = [callbacks = MainThreadCallbacks(main_, called_)](
                                int code) { callbacks.refused(code); }});
}

void GnomeHotkey::release() {
  if (!std::exchange(called_, nullptr)) return;
  worker_->post({.work = [](GnomeShortcut* shortcut) -> std::optional<int> {
                   if (shortcut != nullptr) shortcut->remove();
                   return std::nullopt;
                 },
                 .refused = nullptr});
}

}  // namespace zelnor::platform
