#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/FileOpener.h"
#include "platform/desktop/BusObject.h"
#include "platform/desktop/BusSession.h"

namespace zelnor::platform {

/// The program as the session bus knows it: one process owns the name `org.zelnor.Zelnor` and is
/// told by others what to do, with the interface `org.freedesktop.Application` (Desktop Entry
/// format, D-Bus activation). Main thread only, which it never keeps waiting: events are handled.
///
/// A bus that goes away is looked for again until it is back.
class SessionApplication {
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

  /// What it was told: one of these, or nothing for showing itself.
  using Told = std::function<void(const std::string& action, const Activation& activation)>;

  SessionApplication(std::string busAddress, Told told);
  ~SessionApplication();
  SessionApplication(const SessionApplication&) = delete;
  SessionApplication& operator=(const SessionApplication&) = delete;

  /// Asks for the name. A bus that does not answer is none.
  [[nodiscard]] Standing claim();
  /// In a second process: has the first one do `action`, or show itself if that is empty. Answers
  /// whether it said that it would.
  [[nodiscard]] bool forward(const std::string& action, const Activation& activation);

 private:
  void connected(GDBusConnection* bus);
  void lost();
  void settle(Standing standing);

  const GObjectPointer<GCancellable> cancellable_;  ///< of what is asked of the bus
  const Told told_;
  BusSession session_;
  GDBusConnection* bus_ = nullptr;  ///< nothing while there is none
  std::unique_ptr<BusObject> object_;
  std::function<void(Standing)> settled_;  ///< told once, while somebody waits
};

}  // namespace zelnor::platform
