#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QTimer>

#include "platform/FileOpener.h"

namespace zelnor::platform {

/// The program as the session bus knows it: one process owns the name `org.zelnor.Zelnor` and is
/// told by others what to do, with the interface `org.freedesktop.Application` (Desktop Entry
/// format, D-Bus activation). Main thread only.
///
/// A bus that goes away is looked for again until it is back.
class SessionApplication final : public QObject {
  Q_OBJECT

 public:
  enum class Standing : std::uint8_t {
    first,   ///< this process owns the name
    second,  ///< another one does
    noBus    ///< nobody can know
  };

  /// What else than showing itself the program can be told.
  static constexpr const char* kSearch = "search";
  static constexpr const char* kPreferences = "preferences";
  static constexpr const char* kQuit = "quit";

  SessionApplication();
  ~SessionApplication() override;

  /// Asks for the name. Handles events meanwhile; a bus that does not answer is none.
  [[nodiscard]] Standing claim();
  /// In a second process: has the first one do `action`, or show itself if that is empty. Answers
  /// whether it said that it would.
  [[nodiscard]] bool forward(const QString& action, const Activation& activation);

 Q_SIGNALS:
  void activated(const zelnor::platform::Activation& activation);
  void actionActivated(const QString& action, const zelnor::platform::Activation& activation);

 private:
  void connectToBus();
  void reconnect();
  Q_SLOT void disconnected();

  const QString connection_;  ///< its name in Qt
  QDBusConnection bus_;
  QTimer retry_;
};

}  // namespace zelnor::platform
