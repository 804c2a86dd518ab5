#pragma once

#include <optional>
#include <string>

#include "platform/desktop/GLib.h"

namespace zelnor::platform {

/// The text of an autostart entry, whose other keys and comments stay. Waits for the disk only
/// where it says so.
class AutostartEntry {
 public:
  /// What is at `path`; an empty entry if it holds none. Nothing if there is no file. Throws
  /// std::system_error if it cannot be read.
  static std::optional<AutostartEntry> read(const std::string& path);

  AutostartEntry();

  /// Whether a desktop that finds the entry is to start what it names.
  [[nodiscard]] bool isOn() const;
  /// The program without which the entry does not count; empty if there is none.
  [[nodiscard]] std::string tryExec() const;

  void switchOn();
  void switchOff();
  /// Names the entry, and has it start `program` quietly. Throws FileError if a text file cannot
  /// hold its name.
  void setProgram(const std::string& program);

  [[nodiscard]] std::string text() const;

 private:
  [[nodiscard]] bool isSet(const char* key, bool otherwise) const;
  void set(const char* key, const char* value);

  GLibPointer<GKeyFile> file_;
};

/// `argument` for the Exec line of a desktop entry (the Desktop Entry format, "The Exec key").
std::string quotedForExec(const std::string& argument);

}  // namespace zelnor::platform
