#include "bench/Typist.h"

#include <chrono>
#include <stdexcept>

#include <QEventLoop>
#include <QKeyEvent>
#include <QTimer>

namespace zelnor::bench {
namespace {

constexpr std::chrono::milliseconds kBetweenKeys{100};
constexpr std::chrono::seconds kTypingPatience{30};

}  // namespace

void handleEventsFor(std::chrono::milliseconds time) {
  QEventLoop loop;
  QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
  loop.exec();
}

double Typist::type(const QString& text) {
  for (const QChar character : text.chopped(1)) {
    press(character);
    handleEventsFor(kBetweenKeys);
  }
  const Stopwatch sinceLastKey;
  press(text.back());
  waitUntilPainted(sinceLastKey);
  const auto seconds = sinceLastKey.seconds();
  model_.setQueryText({});
  handleEventsFor(kBetweenKeys);
  return seconds;
}

void Typist::press(QChar character) const {
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, /*key=*/0, Qt::NoModifier, QString(character));
    QCoreApplication::sendEvent(window_.focusWidget(), &event);
  }
}

void Typist::waitUntilPainted(const Stopwatch& sinceLastKey) {
  QEventLoop loop;
  const auto onAnswer = [&] {
    const bool isOlder = sinceLastKey.seconds() < kDebounceSeconds;
    if (isOlder || model_.isSearching()) return;
    application_.whenPainted([&loop] { loop.exit(0); });
  };
  const auto connection =
      QObject::connect(&model_, &SearchViewModel::isSearchingChanged, &loop, onAnswer);
  QTimer::singleShot(kTypingPatience, &loop, [&loop] { loop.exit(1); });
  const bool isPainted = loop.exec() == 0;
  QObject::disconnect(connection);
  application_.whenPainted({});
  if (!isPainted) throw std::runtime_error("no results were painted");
}

}  // namespace zelnor::bench
