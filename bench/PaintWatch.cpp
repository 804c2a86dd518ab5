#include "bench/PaintWatch.h"

#include <utility>

#include <QEvent>

#include "ui/list/ResultRows.h"
#include "ui/panel/NoResultsView.h"

namespace zelnor::bench {
namespace {

/// Both paint on viewports.
bool showsResults(const QObject* receiver) {
  return qobject_cast<const ui::ResultRows*>(receiver->parent()) != nullptr ||
         qobject_cast<const ui::NoResultsView*>(receiver->parent()) != nullptr;
}

}  // namespace

void PaintWatch::whenPainted(std::function<void()> painted) {
  painted_ = std::move(painted);
  hasPainted_ = false;
}

bool PaintWatch::notify(QObject* receiver, QEvent* event) {
  const auto type = event->type();  // handling an event may end its life
  if (type == QEvent::Paint && showsResults(receiver)) hasPainted_ = true;
  const bool isHandled = QApplication::notify(receiver, event);
  if (type == QEvent::UpdateRequest && hasPainted_ && painted_) std::exchange(painted_, {})();
  return isHandled;
}

}  // namespace zelnor::bench
