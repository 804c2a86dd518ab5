#include "platform/desktop/QtMainExecutor.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include "tasks/MainQueue.h"

namespace zelnor::platform {

namespace {
QEvent::Type drainEvent() {
  static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
  return type;
}
}  // namespace

/// The queue is a member, so it goes while the object that its wake-ups are sent to is still there.
class QtMainExecutor::Receiver final : public QObject {
 public:
  [[nodiscard]] tasks::Executor executor() const { return queue_.executor(); }

 protected:
  bool event(QEvent* event) override {
    if (event->type() != drainEvent()) return QObject::event(event);
    queue_.drain();
    return true;
  }

 private:
  tasks::MainQueue queue_{[this] { QCoreApplication::postEvent(this, new QEvent(drainEvent())); }};
};

QtMainExecutor::QtMainExecutor() : receiver_(std::make_unique<Receiver>()) {}
QtMainExecutor::~QtMainExecutor() = default;
tasks::Executor QtMainExecutor::executor() const { return receiver_->executor(); }

}  // namespace zelnor::platform
