#include "ui/panel/TypingRelay.h"

#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QWidget>

namespace zelnor::ui {

TypingRelay::TypingRelay(QWidget& from, QWidget& field)
    : QObject(&from), from_(from), field_(field) {
  from.installEventFilter(this);
}

bool TypingRelay::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::InputMethodQuery:
      answer(static_cast<QInputMethodQueryEvent&>(*event));
      return true;
    case QEvent::InputMethod: {
      QCoreApplication::sendEvent(&field_, event);
      const bool isChosen = !static_cast<QInputMethodEvent*>(event)->commitString().isEmpty();
      if (isChosen) field_.setFocus();
      return true;
    }
    default:
      return QObject::eventFilter(watched, event);
  }
}

/// The field knows the answers, but for where it is.
void TypingRelay::answer(QInputMethodQueryEvent& query) const {
  QCoreApplication::sendEvent(&field_, &query);
  const QPointF offset = from_.mapFromGlobal(field_.mapToGlobal(QPointF()));
  for (const auto place :
       {Qt::ImCursorRectangle, Qt::ImAnchorRectangle, Qt::ImInputItemClipRectangle}) {
    const auto rect = query.value(place);
    if (rect.isValid()) query.setValue(place, rect.toRectF().translated(offset));
  }
}

}  // namespace zelnor::ui
