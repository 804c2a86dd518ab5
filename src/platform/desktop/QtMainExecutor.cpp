#include "platform/desktop/QtMainExecutor.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

#include <QObject>
#include <QSocketNotifier>

#include "platform/FileDescriptor.h"
#include "tasks/MainQueue.h"

namespace zelnor::platform {

namespace {
FileDescriptor createEvent() {
  FileDescriptor event(::eventfd(/*count=*/0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (!event) throw std::system_error(errno, std::generic_category(), "eventfd");
  return event;
}
}  // namespace

/// Qt waits for a descriptor of ours to become readable, so that no object passes through Qt, whose
/// locks the thread sanitizer does not see.
class QtMainExecutor::Receiver final {
 public:
  Receiver() {
    QObject::connect(&notifier_, &QSocketNotifier::activated, [this] { drain(); });
  }
  [[nodiscard]] tasks::Executor executor() const { return queue_.executor(); }

 private:
  void wake() const {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(event_.get(), &one, sizeof one);
  }
  void drain() {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto read = ::read(event_.get(), &count, sizeof count);
    queue_.drain();
  }

  const FileDescriptor event_ = createEvent();
  QSocketNotifier notifier_{event_.get(), QSocketNotifier::Read};
  tasks::MainQueue queue_{[this] { wake(); }};  // goes first: it may still be woken
};

QtMainExecutor::QtMainExecutor() : receiver_(std::make_unique<Receiver>()) {}
QtMainExecutor::~QtMainExecutor() = default;
tasks::Executor QtMainExecutor::executor() const { return receiver_->executor(); }

}  // namespace zelnor::platform
