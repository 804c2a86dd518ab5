#include "app/TerminationSignals.h"

#include <signal.h>
#include <sys/eventfd.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>

namespace zelnor::app {

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

std::atomic<int> wakeUp{-1};

/// Runs between any two instructions: may only call what signal-safety(7) lists.
void onSignal(int /*number*/) {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(wakeUp.load(), &one, sizeof one);
}

void handle(int number, void (*handler)(int)) {
  struct sigaction action{};
  action.sa_handler = handler;
  ::sigaction(number, &action, nullptr);
}

void handleAll(void (*handler)(int)) {
  for (const int number : kSignals) handle(number, handler);
}

}  // namespace

TerminationSignals::TerminationSignals()
    : event_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      notifier_(event_.get(), QSocketNotifier::Read) {
  connect(&notifier_, &QSocketNotifier::activated, this, [this] {
    notifier_.setEnabled(false);
    Q_EMIT received();
  });
  wakeUp = event_.get();
  handleAll(onSignal);
}

TerminationSignals::~TerminationSignals() { handleAll(SIG_DFL); }

void limitEnding(std::chrono::milliseconds patience) {
  handle(SIGALRM, [](int /*number*/) { ::_exit(EXIT_SUCCESS); });
  const auto microseconds = std::chrono::microseconds(patience).count();
  constexpr auto kPerSecond = std::chrono::microseconds(std::chrono::seconds(1)).count();
  const itimerval timer{.it_interval = {},
                        .it_value = {microseconds / kPerSecond, microseconds % kPerSecond}};
  ::setitimer(ITIMER_REAL, &timer, nullptr);
}

}  // namespace zelnor::app
