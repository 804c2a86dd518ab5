#include "app/TerminationSignals.h"

#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>

namespace zelnor::app {

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

std::atomic<int> wakeUp{-1};

/// Runs between any two instructions: may only call what signal-safety(7) lists.
void onSignal(int /*number*/) {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(wakeUp.load(), &one, sizeof one);
}

void handleWith(void (*handler)(int)) {
  struct sigaction action{};
  action.sa_handler = handler;
  for (const int number : kSignals) ::sigaction(number, &action, nullptr);
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
  handleWith(onSignal);
}

TerminationSignals::~TerminationSignals() { handleWith(SIG_DFL); }

}  // namespace zelnor::app
